// The items of a change file: read into pending rows, and written to the log.
#pragma once

#include <span>

#include "daemon/base/tlv.h"

namespace kobd
{
// Reads the items into the pending rows of their tables: a table name (tag 3), a row index (tag 4), then
// pairs of column name (tag 5) and value (tag 2), then again a table name. The sequence may end after any
// item. Rows read before a failure stay pending: call TableRowsRelease on every path.
//   echo: receives the names and indexes (tags 3, 4, 5), also a last name that is not found; nullptr for
//         none. It needs no more room than the items take.
// Returns 0; 1 no such table; 2 an item out of order or past the end, or a text too long for its column; 7 no
// memory, or more rows or bytes than all tables may hold; 11 no room in the echo; 12 no such column.
[[nodiscard]] int TableTlvToRows(std::span<const char> items, TlvWriter* echo);

// If `debug`, writes the items to the log as readable text. The log cuts a text that is longer than its
// longest line.
void TlvTableLog(std::span<const char> items, bool debug);
}  // namespace kobd
