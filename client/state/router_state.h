// What a router has set: the values of all objects that can be read and set, and the rows of all
// tables that can be set. Read for export, and by import to find what differs.
#pragma once

#include <string>
#include <vector>

#include "client/dictionary/dictionary.h"
#include "client/dictionary/tables.h"
#include "client/output/output.h"
#include "client/requests/read_values.h"
#include "client/rows/table_rows.h"

namespace kobd::client
{
struct RouterState
{
    Values values = {};
    std::vector<TableRow> rows = {};  // table after table, in their order
};

// Whether export and import know the object: it can be read and set, requests by its name reach it,
// and both accessors are its own. One that shares an accessor reads or changes another object's value:
// what was read of lteLockband5g, for one, is the LTE lock.
bool IsExported(const ObjectEntry& object);

// Whether they know the table: its rows can be set, and it is not another name of another's rows.
bool IsExported(const TableEntry& table);

// Whether they know the column: it is no other name of one, and the list does not keep it itself.
bool IsExported(const ColumnDef& column);

// Reads all of it. 0, or the exit status after an error line of `command`.
int ReadRouter(const Options& options, const char* command, RouterState* state);

// The row's value in this column, empty when it has none.
std::string ValueOf(const TableRow& row, const std::string& column);
}  // namespace kobd::client
