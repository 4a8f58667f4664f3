// Objects that tell something of a list: how many rows it has, or their indexes.
#pragma once

#include <span>
#include <string>

namespace kobd::host
{
struct ListValue
{
    const char* object;
    const char* table;
    bool indexes;  // the indexes, separated by commas; else how many rows
};

std::span<const ListValue> ListValues();
std::string ListValueText(const ListValue& value);
}  // namespace kobd::host
