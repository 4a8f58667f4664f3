// The rows that a table set request is changing, in one list a table, from the reading of its
// change file to the end of the request. One request at a time; empty outside one.
#pragma once

#include <cstdint>

#include "dictionary/records.h"

namespace kobd
{
// A node of a table's list: the two links, and behind them the row block of the table's row size.
struct PendingRow
{
    PendingRowLinks links;

    char* Row() { return reinterpret_cast<char*>(this + 1); }
};

// Finds the table's pending row of that index. When there is none, makes one at the end of the
// list: filled by the table's get, if it has one, whose result is not looked at, else zeros.
// 0; 7 without memory, or when more rows or bytes are pending than all tables may hold.
[[nodiscard]] int PendingRowOf(const TableDef& table, int32_t index, PendingRow** pending);

// In the order in which the request first named them; nullptr at the end.
PendingRow* FirstPendingRow(const TableDef& table);
PendingRow* NextPendingRow(const TableDef& table, PendingRow* pending);

// Empties the list of every table. Costs nothing when nothing is pending.
void TableRowsRelease();
}  // namespace kobd
