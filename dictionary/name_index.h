// Finds dictionary records by name.
#pragma once

#include <string_view>

#include "dictionary/records.h"

namespace kobd
{
// A record found by name: one of the two is set, or none.
struct NamedRecord
{
    const ObjDef* object = nullptr;
    const TableDef* table = nullptr;
};

// Builds the index.
void NameIndexBuild();

// Empties the index: from now on every name is unknown.
void NameIndexClear();

// Exact match; nothing found for unknown names and outside the dictionary's life.
NamedRecord NameLookup(std::string_view name);
}  // namespace kobd
