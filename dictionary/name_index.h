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

// Every character counts, so names with a common beginning spread; four at a time, since a name is
// hashed several times in a request. The shift brings the high bits down to where slots are chosen.
constexpr uint32_t NameHash(std::string_view name)
{
    constexpr uint32_t kMultiplier = 0x9E3779B1u;  // prime near 2^32 divided by the golden ratio
    const auto byte = [&](size_t at) { return uint32_t{static_cast<unsigned char>(name[at])}; };
    const auto mix = [](uint32_t hash, uint32_t word)
    {
        hash = (hash ^ word) * kMultiplier;
        return hash ^ (hash >> 15);
    };
    uint32_t hash = static_cast<uint32_t>(name.size());
    size_t at = 0;
    for (; at + 4 <= name.size(); at += 4)
        hash = mix(hash, byte(at) | byte(at + 1) << 8 | byte(at + 2) << 16 | byte(at + 3) << 24);
    for (; at < name.size(); ++at) hash = mix(hash, byte(at));
    return hash;
}

// Builds the index and empties the tables' pending lists.
void NameIndexBuild();

// Empties the index: from now on every name is unknown.
void NameIndexClear();

// Exact match; nothing found for unknown names and outside the dictionary's life.
NamedRecord NameLookup(std::string_view name);
}  // namespace kobd
