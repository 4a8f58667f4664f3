// Finds dictionary records by name, and the dictionary's life cycle.
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

// 32-bit FNV-1a: every character counts, so names with a common beginning spread.
constexpr uint32_t NameHash(std::string_view name)
{
    uint32_t hash = 2166136261u;
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash;
}

// Builds the index, empties the tables' pending lists, registers `handlers` and joins the bus.
// Handlers may run before it returns. Always 0; a bus that cannot be joined is logged.
int DictionaryInit(const MsgHandler* handlers);

// Leaves the bus and empties the index. Always 0.
int DictionaryExit();

// Builds the index alone, for those who need names but no bus.
void NameIndexBuild();

// Exact match; nothing found for unknown names and outside the dictionary's life.
NamedRecord NameLookup(std::string_view name);
}  // namespace kobd
