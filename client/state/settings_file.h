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

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "client/arguments/input_file.h"

namespace kobd::client
{
struct FileValue
{
    size_t line;
    std::string name;  // of an object or a column
    std::string value;
};

struct FileRow
{
    size_t line;
    std::vector<FileValue> values = {};
};

struct FileTable
{
    size_t line;
    std::string name;
    std::vector<FileRow> rows = {};
};

struct SettingsFile
{
    std::vector<FileValue> values = {};
    std::vector<FileTable> tables = {};
};

// Reads the text. Appends an error for every line that cannot be read; nothing of such a line is kept.
void ReadSettings(std::string_view text, SettingsFile* file, std::vector<LineError>* errors);

// The text of the file. Line numbers are not looked at.
std::string SettingsText(const SettingsFile& file);
}  // namespace kobd::client
