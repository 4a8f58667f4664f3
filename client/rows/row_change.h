// New values for rows of tables: read from words, checked against the columns, written as the items
// of a change file.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "client/commands/table_commands.h"
#include "client/requests/log_window.h"

namespace kobd::client
{
inline constexpr int32_t kNoIndexYet = -1;  // of a row that is still to be added

struct RowChange
{
    RowAddress row;
    std::vector<std::pair<std::string, std::string>> values = {};  // column, value
};

// Reads groups of TABLE INDEX COLUMN=VALUE... A group begins at a word that names a table. 0, or the
// exit status after an error line that says which word or value is wrong.
int ReadChanges(const Options& options, const Words& words, std::vector<RowChange>* changes);

// Adds the word "COLUMN=VALUE" to the change of a row. 0, or the exit status after an error line.
int AddValue(const Options& options, const std::string& word, RowChange* change);

// The changes as the items of a change file.
Items ChangeItems(const std::vector<RowChange>& changes);

// Has the daemon apply the changes from a change file that is gone when this returns. 0, or the code
// of the refusal and in `why` the start of an error line.
int SendChanges(const Options& options, const std::vector<RowChange>& changes, std::string* why);

// Why the daemon refused the changes, as the start of an error line. `log` is what it wrote
// meanwhile: the check of a row says there what it did not like.
std::string WhyChangesRefused(const Options& options, int code, const std::vector<RowChange>& changes,
                              const std::vector<LogLine>& log);
}  // namespace kobd::client
