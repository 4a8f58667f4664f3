// Columns of rows that show what lies in nvram, so that rows and the store that the router's other
// processes share never say different things. The rows that a list keeps hold such columns empty.
#pragma once

#include "host/tables/lists.h"

namespace kobd::host
{
// Puts the values of nvram into the columns of a row that is handed out, its index in its first word.
// A key that nvram does not have leaves the column as it is. 0; 17 when memory ran out.
int FillFromNvram(const List& list, void* row);

// Sets nvram to what the columns of the row say and empties them. 0; 17 when nvram could not be
// written.
int MoveToNvram(const List& list, void* row);
}  // namespace kobd::host
