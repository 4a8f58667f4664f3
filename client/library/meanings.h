// What objects, tables and columns mean, and the units of their values.
#pragma once

#include <cstdint>
#include <span>

namespace kobd::client
{
// In the place of a table's number: every table that has the column and no row of its own for it.
inline constexpr uint16_t kEveryTable = UINT16_MAX;

struct Meaning
{
    uint16_t number;     // of the object or table in the catalogue
    const char* column;  // nullptr: the object or table itself
    const char* unit;    // empty: none
    const char* text;    // one line
};

std::span<const Meaning> ObjectMeanings();
std::span<const Meaning> TableMeanings();
std::span<const Meaning> ColumnMeanings();  // those of every table at the end
}  // namespace kobd::client
