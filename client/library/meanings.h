// What objects, tables and columns mean, and the units of their values.
#pragma once

#include <span>

namespace kobd::client
{
struct Meaning
{
    const char* table;  // of a column; nullptr: an object or a table
    const char* name;
    const char* unit;  // empty: none
    const char* text;  // one line
};

std::span<const Meaning> ObjectMeanings();
std::span<const Meaning> ColumnMeanings();
}  // namespace kobd::client
