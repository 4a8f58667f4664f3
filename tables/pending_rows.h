// The rows that a table set request changes, from the reading of its change file to the end of the
// request. One request at a time; empty outside one. A table's rows are the list `table.pending`.
#pragma once

#include <cstdint>

#include "dictionary/records.h"

namespace kobd
{
// Finds the table's pending row of that index. When there is none, adds one at the end of the table's
// list: filled by the table's get, if it has one, whose result is not looked at, else zeros.
// 0; 7 without memory, or when more rows or bytes are pending than all tables may hold.
[[nodiscard]] int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending);

// Empties the list of every table. Costs nothing when nothing is pending.
void TableRowsRelease();
}  // namespace kobd
