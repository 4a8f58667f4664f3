// Values of columns against the types that hold them.
#include "client/dictionary/column_value.h"

#include <arpa/inet.h>

#include <cctype>
#include <cerrno>
#include <cinttypes>
#include <cstdlib>

#include "client/dictionary/names.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
struct Bounds
{
    int64_t lower;
    uint64_t upper;
};

Bounds BoundsOf(ValueType type)
{
    switch (type)
    {
        case VT_INT8: return {INT8_MIN, UINT8_MAX};  // shown unsigned, so both are values it takes
        case VT_INT16: return {INT16_MIN, INT16_MAX};
        case VT_UINT8: return {0, UINT8_MAX};
        case VT_UINT16: return {0, UINT16_MAX};
        case VT_UINT32: return {0, UINT32_MAX};
        case VT_UINT64: return {0, UINT64_MAX};
        case VT_BOOL: return {0, 1};
        default: return {INT32_MIN, INT32_MAX};
    }
}

// Digits alone, after a minus sign where the type has negative values. 64-bit columns also read
// "0x" and octal numbers, as the daemon does.
bool NumberFits(ValueType type, const std::string& value)
{
    const Bounds bounds = BoundsOf(type);
    const bool negative = value.starts_with('-');
    const char* digits = value.c_str() + negative;
    if (isdigit(static_cast<unsigned char>(*digits)) == 0) return false;
    char* end = nullptr;
    errno = 0;
    const uint64_t number = strtoull(digits, &end, type == VT_UINT64 ? 0 : 10);
    if (*end != 0 || errno == ERANGE) return false;
    return negative ? number <= static_cast<uint64_t>(-bounds.lower) : number <= bounds.upper;
}

bool IsIpv4(const std::string& value)
{
    in_addr address;
    return inet_pton(AF_INET, value.c_str(), &address) == 1;
}

bool IsMac(const std::string& value)
{
    constexpr size_t kMacText = 6 * 3 - 1;  // six pairs of digits, five separators
    if (value.size() != kMacText) return false;
    for (size_t i = 0; i < value.size(); ++i)
    {
        const bool separator = value[i] == ':' || value[i] == '-';
        if (i % 3 == 2 ? !separator : isxdigit(static_cast<unsigned char>(value[i])) == 0) return false;
    }
    return true;
}

bool Fits(const ColumnDef& column, const std::string& value)
{
    switch (column.type)
    {
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4:
        case VT_STRING_UPPER: return value.size() < column.length;
        case VT_IPV4:
        case VT_IPV4_2: return IsIpv4(value);
        case VT_MAC: return IsMac(value);
        default: return IsNumber(column.type) && NumberFits(column.type, value);
    }
}
}  // namespace

bool IsNumber(ValueType type) { return type <= VT_BOOL || type == VT_ENUM; }

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
    const Bounds bounds = BoundsOf(column.type);
    switch (column.type)
    {
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4: return "a text of 0 to " + std::to_string(column.length - 1) + " bytes";
        case VT_STRING_UPPER:
            return "a text of 0 to " + std::to_string(column.length - 1) + " bytes, stored in upper case";
        case VT_IPV4:
        case VT_IPV4_2: return "an IPv4 address like 192.168.1.2";
        case VT_MAC: return "a MAC address like 00:1A:2B:3C:4D:5E";
        case VT_BOOL: return "0 or 1";
        case VT_STRING_PTR: return "no value: the list keeps this text itself";
        default: return "an integer from " + std::to_string(bounds.lower) + " to " + std::to_string(bounds.upper);
    }
}

std::string WhatIsWrong(const TableEntry& table, const std::string& column, const std::string& value, int* code)
{
    const ColumnDef* found = FindColumn(table, column);
    *code = found == nullptr ? kElementNotFound : kInvalidArgument;
    if (found == nullptr) return "there is no column " + column + DidYouMean(column, AllNames(table.layout.columns));
    if (!Fits(*found, value)) return column + "=" + value + ": it takes " + Takes(*found);
    *code = kSuccess;
    return "";
}
}  // namespace kobd::client
