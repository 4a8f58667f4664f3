// The table operations of a cellular list. Each loads the list from the configuration before its
// first use, and answers 4 when that fails. Row blocks belong to the caller and have the family's row size.
#pragma once

#include <cstdint>

#include "cellular/list.h"

namespace kobd
{
// Tells the index that a new row would get. Nothing is reserved: the set of that index makes the row.
// Returns 0; 15 when the list is full.
int CellularAdd(CellularList& list, int32_t* index);

// Removes the entry and its section, and loads the list again. Returns 0; 13 when there is no such entry.
int CellularDel(CellularList& list, int32_t index);

// Copies the entry's row. Returns 0; 13 when there is no such entry.
int CellularGet(CellularList& list, int32_t index, void* row);

// Replaces the entry's row, or makes an entry when `index` is above every index in use, and writes
// it to the configuration. Returns 0; 13 for a negative index, for one that is neither in use nor above, and
// when the list is full; 7 without memory, and nothing has changed.
int CellularSet(CellularList& list, int32_t index, const void* row);

// Copies the row after the one with index `previous`, the first one for -1. Returns 0; 13 when there is none.
int CellularNext(CellularList& list, int32_t previous, void* row);
}  // namespace kobd
