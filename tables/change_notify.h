// Tells the notification module what a table set request changed.
#pragma once

#include <span>

namespace kobd
{
// Sends the echo of a change file (table names, row indexes and column names in file order) as
// event 3. An echo that is too long for one notification is sent as several; each begins with the table
// name and row index of its columns. An empty echo is sent as one empty event.
void TableChangeNotify(std::span<const char> echo);
}  // namespace kobd
