// Finds dictionary records by name.
#pragma once

#include <string_view>

#include "dictionary/records.h"

namespace kobd
{
// A record found by name: at most one of the two is set.
struct NamedRecord
{
    const ObjDef* object = nullptr;
    const TableDef* table = nullptr;
};

// Builds the index.
void NameIndexBuild();

// Empties the index: from now on every name is unknown.
void NameIndexClear();

// Finds the record of exactly this name, the earlier one when two records have it. Finds nothing before
// NameIndexBuild and after NameIndexClear.
NamedRecord NameLookup(std::string_view name);
}  // namespace kobd
