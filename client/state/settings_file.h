// The file of kobctl export and import:
//
//   # comment
//   webHttpPort=8080
//   description=two\nlines (a backslash is written \\ twice)
//   [FwUrlFilterTable]           the rows of this table follow; it is empty when there are none
//   [FwUrlFilterTable row]       a row, without an index: the router gives it a new one
//   URL=example.com              a column; one that is left out is empty
//   end
//
// The last line is "end". A file without it was cut.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/arguments/input_file.h"
#include "client/output/outcome.h"
#include "client/state/router_state.h"

namespace kobd::client
{
struct FileValue
{
    size_t line;
    std::string name;  // of an object or a column
    std::string value;
};

using FileRow = std::vector<FileValue>;

struct FileTable
{
    size_t line;
    std::string name;
    std::vector<FileRow> rows = {};
    bool no_rows_told = false;  // columns stand in no row, and one error says so for all of them
};

struct SettingsFile
{
    std::vector<FileValue> values = {};
    std::vector<FileTable> tables = {};
    bool ended = false;  // its last line was "end"
};

// Reads the text. Adds an error for every line that cannot be read; nothing of such a line is kept.
void ReadSettings(std::string_view text, SettingsFile* file, LineErrors* errors);

// The same as one JSON object: "objects" with their values by name, "unsettable" with those that the router holds and
// would refuse, "tables" with rows of columns. Numbers are numbers. kobctl schema describes it.
Json SettingsJson(const RouterState& state);

// The text of the file for what the router has set. `unread` gets the objects that the router could not read.
std::string SettingsText(const RouterState& state, Words* unread);
}  // namespace kobd::client
