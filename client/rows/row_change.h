// Changes of rows: read from words, checked against the columns, sent to the daemon.
#pragma once

#include <string>
#include <vector>

#include "client/arguments/assignment.h"
#include "client/rows/row_address.h"

namespace kobd::client
{
inline constexpr int32_t kNoIndexYet = -1;  // of a row that is still to be added

struct RowChange
{
    RowAddress row;
    Assignments values = {};  // of columns
};

// Reads groups of TABLE INDEX COLUMN=VALUE... A group begins at a word that names a table.
Failure ReadChanges(const Words& words, std::vector<RowChange>* changes);

// Adds the word "COLUMN=VALUE" to the change of a row, checked against the column.
Failure AddValue(const std::string& word, RowChange* change);

// Has the daemon apply the changes, together. They go through a change file, which is gone when this returns.
Failure SendChanges(const Options& options, const std::vector<RowChange>& changes);

// Adds an empty row to the table, below the options' parent where there is one.
Failure AddRow(const Options& options, const TableEntry& table, int32_t* index);

Failure DeleteRow(const Options& options, const RowAddress& row);
}  // namespace kobd::client
