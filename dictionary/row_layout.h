// The layout of a table's rows in memory: the columns with their offsets, and the rules that every layout keeps.
//
// Bytes 0 to 3 of a row hold its index, by which the list operations know it. The columns follow. A row
// may be longer than its columns; the bytes after them belong to the list. Rows have no alignment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "dictionary/value_type.h"

namespace kobd
{
struct ColumnDef
{
    const char* name;
    uint32_t offset;  // bytes from the start of the row, never 0
    ValueType type;
    uint32_t length;                 // bytes of a text field with its zero byte
    const char* alias_of = nullptr;  // the column that this one is another name of
};

struct RowLayout
{
    std::span<const ColumnDef> columns;
    uint32_t row_size;  // bytes
};

inline constexpr uint32_t kRowIndexBytes = 4;
inline constexpr uint32_t kMacBytes = 6;

enum class FieldKind
{
    kNone,  // the type has no field
    kSigned,
    kUnsigned,
    kText,
    kUpperText,  // kept and shown in upper case
    kPointer,    // to a text that the list keeps: a 32-bit address on every build
    kIpv4,       // in network byte order
    kMac,
};

// How a column is kept in its row, and what its text may be. The length of a column matters for texts only.
struct FieldForm
{
    FieldKind kind = FieldKind::kNone;
    uint32_t width = 0;  // bytes in the row
    int64_t lower = 0;   // of a number, or of the bytes of a text; both bounds are inclusive
    uint64_t upper = 0;

    // In which a number is read; 0: decimal, hexadecimal after "0x", octal after "0".
    constexpr int Base() const { return width == sizeof(uint64_t) ? 0 : 10; }
};

constexpr FieldForm FormOf(const ColumnDef& column)
{
    using enum FieldKind;
    switch (column.type)
    {
        case VT_INT8: return {kSigned, 1, INT8_MIN, UINT8_MAX};  // shown without a sign
        case VT_INT16: return {kSigned, 2, INT16_MIN, INT16_MAX};
        case VT_INT32:
        case VT_ENUM: return {kSigned, 4, INT32_MIN, INT32_MAX};
        case VT_BOOL: return {kSigned, 4, 0, 1};
        case VT_UINT8: return {kUnsigned, 1, 0, UINT8_MAX};
        case VT_UINT16: return {kUnsigned, 2, 0, UINT16_MAX};
        case VT_UINT32: return {kUnsigned, 4, 0, UINT32_MAX};
        case VT_UINT64: return {kUnsigned, 8, 0, UINT64_MAX};
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4: return {kText, column.length, 0, column.length - 1};
        case VT_STRING_UPPER: return {kUpperText, column.length, 0, column.length - 1};
        case VT_STRING_PTR: return {kPointer, 4};
        case VT_IPV4:
        case VT_IPV4_2: return {kIpv4, 4};
        case VT_MAC: return {kMac, kMacBytes};
        default: return {};
    }
}

constexpr uint32_t FieldWidth(const ColumnDef& column) { return FormOf(column).width; }

// Whether two columns of a layout are right together: their names differ, and they do not overlap, unless
// one is the alias of the other and has exactly its bytes.
constexpr bool MayStandBeside(const ColumnDef& a, const ColumnDef& b)
{
    const bool apart = a.offset + FieldWidth(a) <= b.offset || b.offset + FieldWidth(b) <= a.offset;
    const bool same_bytes = a.offset == b.offset && a.type == b.type && a.length == b.length;
    const bool named_so = (a.alias_of != nullptr && std::string_view(a.alias_of) == b.name) ||
                          (b.alias_of != nullptr && std::string_view(b.alias_of) == a.name);
    return std::string_view(a.name) != b.name && (named_so ? same_bytes : apart);
}

// True when every column has a field, lies behind the index and inside the row, and overlaps no
// other but its alias.
constexpr bool Fits(const RowLayout& layout)
{
    for (size_t i = 0; i < layout.columns.size(); ++i)
    {
        const ColumnDef& column = layout.columns[i];
        if (FieldWidth(column) == 0 || column.offset < kRowIndexBytes) return false;
        if (column.offset + FieldWidth(column) > layout.row_size) return false;
        for (size_t j = i + 1; j < layout.columns.size(); ++j)
            if (!MayStandBeside(column, layout.columns[j])) return false;
    }
    return !layout.columns.empty();
}
}  // namespace kobd
