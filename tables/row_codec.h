// Writes rows as items, as a table get answers them and a dump file holds them.
#pragma once

#include <cstddef>

#include "daemon/base/tlv.h"
#include "dictionary/records.h"
#include "dictionary/row_field.h"

namespace kobd
{
// Appends a row of the table (table.row_size bytes at any alignment): table name (tag 3), row
// index (tag 4), then for each column, in the order of the layout, its name (tag 5) and its text
// (tag 2). Returns the bytes appended; 0 when the row does not fit, and `out` is as it was.
// A text held outside the row is cut at 65534 bytes: the 16-bit length of an item counts the zero byte too.
[[nodiscard]] size_t TableRowToTlv(const void* row, const TableDef& table, TlvWriter& out);

// Finds a column by its exact name; nullptr when the table has none of that name.
const ColumnDef* ColumnOf(const TableDef& table, std::string_view name);
}  // namespace kobd
