// The items of a change file: read into pending rows, and written to the log.
#pragma once

#include <span>

#include "daemon/base/tlv.h"

namespace kobd
{
// Reads the items into the pending rows of their tables: a table name (tag 3), a row index (tag
// 4), then pairs of column name (tag 5) and value (tag 2), then again a pair or a table name. May
// end after any item. What was read before a failure stays pending: call TableRowsRelease on every
// path.
//   echo: takes the names and indexes met (tags 3, 4, 5), a name that is not found as the last;
//         nullptr for none. As much room as there are items is enough.
// 0; 1 no such table; 2 out of order, an item that runs past the end, a text too long for its column;
// 7 no memory, or more rows or bytes than all tables may hold; 11 no room in the echo; 12 no such column.
[[nodiscard]] int TableTlvToRows(std::span<const char> items, TlvWriter* echo);

// Writes a sequence of items to the log as readable text, if `debug`. One line, which the log cuts
// at its own limit.
void TlvTableLog(std::span<const char> items, bool debug);
}  // namespace kobd
