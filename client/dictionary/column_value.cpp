// Values of columns against the types that hold them.
#include "client/dictionary/column_value.h"

#include "daemon/base/result.h"

namespace kobd::client
{
bool IsNumber(ValueType type)
{
    const FieldKind kind = FormOf({"", 0, type, 0}).kind;
    return kind == FieldKind::kSigned || kind == FieldKind::kUnsigned;
}

const char* ColumnTypeName(ValueType type)
{
    switch (type)
    {
        case VT_INT32: return "integer";
        case VT_INT16: return "16-bit integer";
        case VT_INT8: return "8-bit integer";
        case VT_UINT64: return "unsigned 64-bit integer";
        case VT_UINT32: return "unsigned integer";
        case VT_UINT16: return "unsigned 16-bit integer";
        case VT_UINT8: return "unsigned 8-bit integer";
        case VT_BOOL: return "flag";
        case VT_ENUM: return "choice";
        case VT_IPV4:
        case VT_IPV4_2: return "IPv4 address";
        case VT_MAC: return "MAC address";
        case VT_STRING_UPPER: return "upper-case text";
        case VT_STRING_PTR: return "text kept by the list";
        default: return "text";
    }
}

std::string Takes(const ColumnDef& column)
{
    const FieldForm form = FormOf(column);
    const std::string range = std::to_string(form.lower) + " to " + std::to_string(form.upper);
    switch (form.kind)
    {
        case FieldKind::kSigned:
        case FieldKind::kUnsigned: return column.type == VT_BOOL ? "0 or 1" : "an integer from " + range;
        case FieldKind::kText: return "a text of " + range + " bytes";
        case FieldKind::kUpperText: return "a text of " + range + " bytes, stored in upper case";
        case FieldKind::kIpv4: return "an IPv4 address like 192.168.1.2";
        case FieldKind::kMac: return "a MAC address like 00:1A:2B:3C:4D:5E";
        case FieldKind::kPointer:
        case FieldKind::kNone: break;
    }
    return "no value: the list keeps this text itself";
}

Fault JudgeCell(const TableEntry& table, const std::string& column, const std::string& value)
{
    const ColumnDef* found = FindColumn(table, column);
    if (found == nullptr)
        return {kElementNotFound, "there is no column " + column + DidYouMean(column, AllNames(table.layout.columns))};
    const ValueFault fault = JudgeColumn(value.c_str(), *found);
    if (fault == ValueFault::kNone) return {};
    return {kInvalidArgument, FaultText(fault), Takes(*found)};
}
}  // namespace kobd::client
