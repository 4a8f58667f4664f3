// Why a value would be refused.
#include "client/dictionary/diagnose.h"

#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"

namespace kobd::client
{
namespace
{
struct Bounds
{
    uint64_t lower;
    uint64_t upper;
};

Bounds ReadBounds(const char* limitation, uint64_t highest)
{
    const std::string text = limitation != nullptr ? limitation : "";
    const size_t colon = text.find(':');
    Bounds bounds = {0, highest};
    if (colon != 0 && !text.empty()) bounds.lower = strtoul(text.c_str(), nullptr, 10);
    if (colon != std::string::npos && colon + 1 < text.size())
        bounds.upper = strtoul(text.c_str() + colon + 1, nullptr, 10);
    return bounds;
}

bool NumberFits(const std::string& value, const char* limitation, uint64_t highest)
{
    if (value.empty() || !std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return false;
    const Bounds bounds = ReadBounds(limitation, highest);
    const uint64_t number = strtoull(value.c_str(), nullptr, 10);
    return number <= highest && number >= bounds.lower && number <= bounds.upper;
}

bool LengthFits(const std::string& value, const char* limitation, uint64_t longest)
{
    const Bounds bounds = ReadBounds(limitation, longest);
    return value.size() >= bounds.lower && value.size() <= bounds.upper;
}

bool IsChoice(const std::string& value, const char* limitation)
{
    std::string rest = limitation != nullptr ? limitation : "";
    for (size_t bar = 0; bar != std::string::npos; rest.erase(0, bar + 1))
    {
        bar = rest.find('|');
        if (strcasecmp(rest.substr(0, bar).c_str(), value.c_str()) == 0) return true;
        if (bar == std::string::npos) break;
    }
    return false;
}

bool Fits(const ObjectEntry& object, const std::string& value)
{
    switch (object.type)
    {
        case VT_INT32: return NumberFits(value, object.limitation, INT32_MAX);
        case VT_UINT32: return NumberFits(value, object.limitation, UINT32_MAX);
        case VT_UINT16: return NumberFits(value, object.limitation, UINT16_MAX);
        case VT_BOOL: return value == "0" || value == "1";
        case VT_STRING:
            return LengthFits(value, object.limitation, 512) && value.find_first_of("`$()|&") == std::string::npos;
        case VT_TEXT:
        case VT_TEXT_2: return LengthFits(value, object.limitation, 1024);
        case VT_ENUM: return IsChoice(value, object.limitation);
        default: return true;
    }
}
}  // namespace

std::string WhatIsWrong(const std::string& name, const std::string& value)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (object == nullptr) return "there is no object " + name + DidYouMean(Nearest(name));
    if (object->access == Access::kReadOnly) return name + " is read-only";
    if (!Fits(*object, value)) return name + "=" + value + ": it takes " + Accepts(*object);
    return "";
}
}  // namespace kobd::client
