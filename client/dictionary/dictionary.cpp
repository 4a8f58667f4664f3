// The client's view of the dictionary.
#include "client/dictionary/dictionary.h"

#include <algorithm>
#include <vector>

#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "dictionary/value_rule.h"

namespace kobd::client
{
namespace
{
struct Rule
{
    const char* check;
    const char* text;
};

#define RULE(check, text) {check, text},
constexpr Rule kRules[] = {
#include "client/dictionary/check_rules.def"
};
#undef RULE

// A value is digits alone, so that a bound below 0 says nothing.
std::string Range(const ObjectEntry& object)
{
    const ValueBounds bounds = BoundsOf(object.type, object.limitation);
    return std::to_string(std::max<int64_t>(bounds.lower, 0)) + " to " + std::to_string(bounds.upper);
}

std::string Choices(const char* limitation)
{
    std::string text = limitation != nullptr ? limitation : "";
    for (size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', bar)) text.replace(bar, 1, ", ");
    return "one of " + text;
}

std::string AcceptsByType(const ObjectEntry& object)
{
    switch (object.type)
    {
        case VT_INT32:
        case VT_UINT32:
        case VT_UINT16: return "an integer from " + Range(object);
        case VT_BOOL: return "0 or 1";
        case VT_STRING: return "a text of " + Range(object) + " bytes, none of ` $ ( ) | &";
        case VT_TEXT:
        case VT_TEXT_2: return "a text of " + Range(object) + " bytes";
        case VT_ENUM: return Choices(object.limitation);
        default: return "any text";
    }
}
}  // namespace

std::span<const ObjectEntry> Objects() { return kObjectRows; }

const ObjectEntry* FindObject(std::string_view name)
{
    for (const ObjectEntry& object : Objects())
        if (name == object.name) return &object;
    return nullptr;
}

const char* TypeName(ValueType type)
{
    switch (type)
    {
        case VT_INT32: return "integer";
        case VT_UINT64: return "unsigned 64-bit integer";
        case VT_UINT32: return "unsigned integer";
        case VT_UINT16: return "unsigned 16-bit integer";
        case VT_BOOL: return "flag";
        case VT_ENUM: return "choice";
        default: return "text";
    }
}

const char* AccessText(Access access)
{
    switch (access)
    {
        case Access::kReadWrite: return "read and write";
        case Access::kReadOnly: return "read-only";
        case Access::kWriteOnly: return "write-only";
        case Access::kAction: return "action, reads as 0";
    }
    return "";
}

const char* RuleOf(std::string_view check)
{
    for (const Rule& rule : kRules)
        if (check == rule.check) return rule.text;
    return nullptr;
}

std::string Accepts(const ObjectEntry& object)
{
    if (object.access == Access::kReadOnly) return "no value: it is read-only";
    const char* rule = object.validator != nullptr ? RuleOf(object.validator) : nullptr;
    if (rule == nullptr) return AcceptsByType(object);
    // A text without limits of its own says nothing that the rule does not say.
    return object.limitation == nullptr ? rule : AcceptsByType(object) + "; " + rule;
}

std::string Nearest(std::string_view name)
{
    std::vector<const char*> names;
    for (const ObjectEntry& object : Objects()) names.push_back(object.name);
    for (const TableEntry& table : Tables()) names.push_back(table.name);
    return NearestOf(name, names);
}
}  // namespace kobd::client
