// Reads a field of a row as text and writes a text into a field, at any alignment and alike on 32 and
// 64 bits. The row codec, the validators and the imitated router's lists use it.
#pragma once

#include <span>
#include <string_view>

#include "dictionary/row_layout.h"

namespace kobd
{
// The room that FieldText may need for a copy: bytes of the catalogue's longest text column, with its
// zero byte.
inline constexpr size_t kFieldTextMax = 4096;

// The row's own index, its first word.
int32_t RowIndex(const void* row);

// Returns a field as text. `buffer` must have at least kFieldTextMax bytes. The text is in the row, in `buffer`, or
// where the row's pointer points, and is valid as long as all three are. A text without a zero byte ends where its
// field ends. The text is empty for types that have no field.
std::string_view FieldText(const void* row, const ColumnDef& column, std::span<char> buffer);

// Stores `text` in the field of the column. Returns 0; 2 when a text is too long for its column, and the
// field keeps what it holds. Numbers are not checked: a text that is no number is stored as 0, a number
// of more than 32 bits (64 for VT_UINT64) as the nearest one, and a smaller field takes its low bits.
int TableFieldFromString(void* row, const ColumnDef& column, const char* text);

// Whether two rows have the same bytes in the column; makes `to` have those of `from`.
bool IsSameField(const ColumnDef& column, const void* one, const void* other);
void CopyField(const ColumnDef& column, const void* from, void* to);
}  // namespace kobd
