// The rows of the lists between the state file, the factory's rows and memory.
//
//   [FwPortForwardTable]         from here on the table has the rows below and none of the factory's
//   @last=7                      the highest index given so far
//   [FwPortForwardTable 3]       a row and its lines, as row_text.h says
//   Protocol=TCP
//
// Only lists that clients can change are written, and of these only those that they did change.
#pragma once

#include <string>

#include "host/state/state_store.h"

namespace kobd::host
{
// Gives every list the factory's rows, then those of the file at `path`. A file that is damaged, or
// holds what is no row of its table, is kept aside and reported, and the factory's rows serve.
// Tables and columns that this build does not know are reported, and kept in the file.
void ListsLoad(const std::string& path);

// Whether rows changed since the last ListsKept, what the file shall hold, and that it does.
bool ListsChanged();
Settings ListsState();
void ListsKept();
}  // namespace kobd::host
