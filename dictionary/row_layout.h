// How a row of a table lies in memory: columns with their places, and what must hold for them.
//
// Bytes 0 to 3 of a row are its index, by which the list operations know it; columns lie behind.
// A row may be longer than its columns: those bytes are the list's own. Rows have no alignment.
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
    const char* alias_of = nullptr;  // the column of which this one is another name
};

struct RowLayout
{
    std::span<const ColumnDef> columns;
    uint32_t row_size;  // bytes
};

inline constexpr uint32_t kRowIndexBytes = 4;
inline constexpr uint32_t kMacBytes = 6;

// Bytes that a field takes in its row: the type decides, the length counts for texts alone. 0 for
// types that have no field.
constexpr uint32_t FieldWidth(const ColumnDef& column)
{
    switch (column.type)
    {
        case VT_INT8:
        case VT_UINT8: return 1;
        case VT_INT16:
        case VT_UINT16: return 2;
        case VT_INT32:
        case VT_UINT32:
        case VT_BOOL:
        case VT_ENUM:
        case VT_IPV4:
        case VT_IPV4_2:
        case VT_STRING_PTR: return 4;  // a pointer is a 32-bit address on every build
        case VT_UINT64: return 8;
        case VT_MAC: return kMacBytes;
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4:
        case VT_STRING_UPPER: return column.length;
        default: return 0;
    }
}

// Whether two columns may stand as they are: apart from each other, or one the other's alias on
// the very same bytes.
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
