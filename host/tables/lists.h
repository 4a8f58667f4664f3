// The lists behind the tables of the host platform. A list is known by its number: the row of its
// table among those that the platform keeps. Tables that name the same operations share one list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string_view>

#include "dictionary/row_layout.h"
#include "host/sim/moving.h"
#include "host/tables/row_list.h"
#include "host/tables/simulated_rows.h"

namespace kobd::host
{
struct List
{
    size_t number;  // of the table's row in the catalogue
    const char* table;
    const RowLayout* layout;
    bool kept;  // clients can add or set its rows: they are written to the database
    RowList rows;
    bool own = false;                // the database has its rows, the factory's serve no more
    std::set<int32_t> changed = {};  // indexes of the rows that may differ from what the database has
    SimulatedRows simulated = {};
    MovedRows moved = {};
};

std::span<List> AllLists();
List* FindList(std::string_view table);  // nullptr: the platform keeps no such table

// The same by the number of a table's row in the catalogue, which may be another name of the list.
List* ListOfTable(size_t number);

// The number of the list that names `function` as one of its operations.
size_t ListOf(std::string_view function);

// Behind the operations; rows are blocks of the list's row size. 0; 13 no such row; 15 the list is
// full, or has given every index; 17 memory ran out, and nothing has changed.
int ListAdd(size_t list, int32_t* index);
int ListDel(size_t list, int32_t index);
int ListGet(size_t list, int32_t index, void* row);

// Stores the row under `index`, whatever its first word says, and without what stands behind its
// texts. Also 17, and nothing is stored, when nvram has columns of it and cannot be written.
int ListSet(size_t list, int32_t index, const void* row);

// Keeps the path in the row's column `pPath`, where its layout has one, else beside the row. Also 2
// when it is too long for the column.
int ListSetParentPath(size_t list, int32_t index, const char* parent_path);

// The row behind `previous`, the first for -1. 13 when there is none or `previous` is no row.
int ListNext(size_t list, int32_t previous, void* row);
}  // namespace kobd::host
