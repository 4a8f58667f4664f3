// Keeps the rows that a table set request changes, from the reading of its change file to the end of the
// request. Only one request is handled at a time. The list `table.pending` has the rows of one table.
#pragma once

#include <cstdint>

#include "dictionary/records.h"

namespace kobd
{
// Finds the table's pending row of that index. When there is none, adds one at the end of the table's
// list: zeros, over which the table's get, if it has one, writes the stored row.
// Returns 0; 7 without memory, or when more rows or bytes would be pending than all tables may hold.
[[nodiscard]] int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending);

// Empties the list of every table. Costs nothing when nothing is pending.
void TableRowsRelease();
}  // namespace kobd
