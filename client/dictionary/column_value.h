// What a column of a table takes, in words, and why a value would not do.
#pragma once

#include <string>

#include "client/dictionary/dictionary.h"

namespace kobd::client
{
// The type in words: "unsigned 64-bit integer", "text".
const char* ColumnTypeName(ValueType type);

// What the column takes: "a text of 0 to 31 bytes".
std::string Takes(const ColumnDef& column);

// True when values of the type are numbers, which JSON shows without quotes.
bool IsNumber(ValueType type);

// The fault of the value for the column. The daemon stores 0 for what is no number and cuts what is too large for its
// field, so the client refuses both.
Fault JudgeCell(const TableEntry& table, const std::string& column, const std::string& value);
}  // namespace kobd::client
