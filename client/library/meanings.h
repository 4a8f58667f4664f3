// What objects, tables and columns mean, and the units of their values.
#pragma once

#include <span>
#include <string_view>

namespace kobd::client
{
// In the place of a table: every table that has the column and no row of its own for it.
inline constexpr std::string_view kEveryTable = "*";

struct Meaning
{
    const char* table;  // of a column; nullptr: an object or a table
    const char* name;
    const char* unit;  // empty: none
    const char* text;  // one line
};

std::span<const Meaning> ObjectMeanings();
std::span<const Meaning> TableMeanings();
std::span<const Meaning> ColumnMeanings();  // those of every table at the end
}  // namespace kobd::client
