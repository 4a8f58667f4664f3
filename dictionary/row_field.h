// The fields of a row as text and back: the one place that reads and writes them, at any alignment
// and alike on 32 and 64 bits. Shared by the row codec and the lists of the host platform.
#pragma once

#include <span>
#include <string_view>

#include "dictionary/row_layout.h"

namespace kobd
{
// Bytes of the longest text column of the catalogue, zero byte included, which is what FieldText
// may need for a copy.
inline constexpr size_t kFieldTextMax = 4096;

// The row's own index, its first word.
int32_t RowIndex(const void* row);

// The text of a field. Lies in the row, in `buffer` (at least kFieldTextMax bytes), or where the
// row's pointer leads, and lives as long as those. A text field without a zero byte ends with its
// field. Empty for types that have no field.
std::string_view FieldText(const void* row, const ColumnDef& column, std::span<char> buffer);

// Stores `text` into the field of the column. 0, or 2 and the field unchanged when a text is too
// long for its column. Numbers are not checked: what is no number stores 0, what does not fit the
// reading type stores its nearest value, what does not fit the field is cut to its low bits.
int TableFieldFromString(void* row, const ColumnDef& column, const char* text);
}  // namespace kobd
