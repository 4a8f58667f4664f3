// The commands of kobctl. commands.def has one row for each, with its help; the function of a command stands in the
// file of its group.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "client/arguments/command_line.h"
#include "client/dictionary/dictionary.h"
#include "client/output/outcome.h"
#include "client/requests/request.h"
#include "client/rows/row_address.h"
#include "client/state/past_changes.h"

namespace kobd::client
{
#define COMMAND(group, name, words, least, most, options, function, ...) \
    Outcome function(const Options& options_given, const Words& words_given);
#define GROUP(...)
#include "client/commands/commands.def"
#undef COMMAND
#undef GROUP

struct Command
{
    const char* group;  // its heading in the overview; empty for a command that the overview leaves out
    const char* name;   // one word, or two: "table set"
    const char* words;  // those it takes, as the help shows them
    size_t least_words;
    size_t most_words;
    const char* options;                           // its own, beside those of every command
    Outcome (*run)(const Options&, const Words&);  // nullptr: commands of two words begin with this name
    const char* summary;
    const char* details;  // the help below the first line
};

// In the order of the overview.
std::span<const Command> Commands();

// The second words of the commands that begin with `first`: "list", "describe".
Words SecondWords(const std::string& first);

// Runs the command line and prints the outcome. Its options are added to `defaults`. Returns the exit status.
int RunCommand(const Words& command_line, const Options& defaults);

// The prompt of kobctl alone at a terminal. Returns the exit status of the last command.
int RunPrompt();

// Shows values by name: the value by itself when it stands alone, else NAME=VALUE; behind it "(simulated)" where it is.
Outcome ValuesOutcome(const std::vector<std::pair<std::string, std::string>>& values, bool alone,
                      const Words& simulated = {});

// A name, or "TABLE COLUMN", with its kind, its meaning and its unit, of which the last two may be NULL.
Json MeaningJson(const std::string& name, const char* kind, const char* meaning, const char* unit);

// The meaning with the unit behind it.
std::string MeaningText(const char* meaning, const char* unit);

// A row as the JSON of every command names it.
inline Json JsonOf(const RowAddress& row) { return {{"table", row.table->name}, {"index", row.index}}; }

// An object's old value, where it is known, and its new one for JSON; `text` gets them as the lines of a diff. Secrets
// are not shown.
Json AddDifference(const Assignment& pair, const std::optional<std::string>& old, std::string* text);

// Sets the values. `response` is what came back, `before` the old values that could be read. Where the router fails
// half way the failure names what was set, what was not, and what failed.
Outcome SetValues(const Options& options, const Assignments& pairs, Response* response, Values* before);

// What describe and table describe show of a table.
Outcome DescribedTable(const TableEntry& table);
}  // namespace kobd::client
