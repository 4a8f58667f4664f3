// The client's view of the dictionary.
#include "client/dictionary/dictionary.h"

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
struct Rule
{
    const char* name;  // of the check
    const char* text;
};

#define RULE(name, text) {name, text},
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

const ObjectEntry* FindObject(std::string_view name) { return FindNamed(kObjectRows, name); }

const TableEntry* FindTable(std::string_view name) { return FindNamed(kTableRows, name); }

const ColumnDef* FindColumn(const TableEntry& table, std::string_view name)
{
    return FindNamed(table.layout.columns, name);
}

Words KnownNames()
{
    Words names = AllNames(kObjectRows);
    for (const TableEntry& table : kTableRows) names.emplace_back(table.name);
    return names;
}

std::string NoSuchName(const std::string& kind, const std::string& name)
{
    if (kind == "object" && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (kind == "table" && FindObject(name) != nullptr) return name + " is an object, not a table";
    return "there is no " + kind + " " + name + DidYouMean(name, kind == "table" ? AllNames(kTableRows) : KnownNames());
}

Words ReadableObjects()
{
    Words names;
    for (const ObjectEntry& object : kObjectRows)
        if (object.access != Access::kWriteOnly) names.emplace_back(object.name);
    return names;
}

bool IsCellularTable(std::string_view table)
{
    static constexpr std::string_view kTables[] = {"CellularInterfaceTable", "CellularUSIMTable", "CellularStatsTable",
                                                   "cellularaccesspointTable"};
    return std::ranges::find(kTables, table) != std::end(kTables);
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

Words OperationNames(unsigned operations)
{
    static constexpr const char* kNames[] = {"add", "del", "get", "set", "setPPath", "next", "validate"};
    Words names;
    for (size_t i = 0; i < std::size(kNames); ++i)
        if ((operations & 1u << i) != 0) names.emplace_back(kNames[i]);
    return names;
}

std::string RuleOf(std::string_view check, const char* before)
{
    const Rule* rule = FindNamed(kRules, check);
    return rule != nullptr ? std::string(before) + rule->text : "";
}

std::string Accepts(const ObjectEntry& object)
{
    if (object.access == Access::kReadOnly) return "no value: it is read-only";
    const std::string rule = object.validator != nullptr ? RuleOf(object.validator) : "";
    // The words for a check also tell the type. Limits are told in front of them.
    if (!rule.empty() && object.limitation == nullptr) return rule;
    return AcceptsByType(object) + (rule.empty() ? "" : "; " + rule);
}

std::string Fault::Text(const std::string& name, const std::string& value) const
{
    return right.empty() ? reason : name + "=" + value + ": it takes " + right;
}

Fault JudgeObject(const std::string& name, const std::string& value)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return {kInvalidArgument, name + " is a table, not an object"};
    if (object == nullptr) return {kNotFound, NoSuchName("object", name)};
    if (object->access == Access::kReadOnly) return {kReadonly, name + " is read-only"};
    const ValueFault fault = JudgeValue(value.c_str(), object->type, object->limitation).fault;
    if (fault == ValueFault::kNone) return {};
    return {kInvalidArgument, FaultText(fault), Accepts(*object)};
}

std::string WhatIsWrong(const std::string& name, const std::string& value)
{
    return JudgeObject(name, value).Text(name, value);
}

const char* FaultText(ValueFault fault)
{
    switch (fault)
    {
        case ValueFault::kNone: return "nothing is wrong with it";
        case ValueFault::kNoDigits: return "it is no number in decimal digits";
        case ValueFault::kRange: return "it is out of range";
        case ValueFault::kLength: return "its length is out of range";
        case ValueFault::kForbidden: return "it has one of the characters ` $ ( ) | &";
        case ValueFault::kNoFlag: return "it is neither 0 nor 1";
        case ValueFault::kNoChoice: return "it is none of the choices";
        case ValueFault::kNoAddress: return "it is no address of this kind";
        case ValueFault::kNoValue: break;
    }
    return "nothing can be set here";
}

std::string NoOperation(const TableEntry& table, Operation operation)
{
    return std::string(table.name) + " has no " + Joined(OperationNames(operation)) + " operation, it has " +
           Joined(OperationNames(table.operations));
}

std::string NoRow(const std::string& table, int32_t index, const std::vector<int32_t>& present)
{
    Words indexes;
    for (const int32_t one : present) indexes.push_back(std::to_string(one));
    return table + " has no row " + std::to_string(index) +
           (indexes.empty() ? ", it is empty" : ", it has " + Joined(indexes));
}
}  // namespace kobd::client
