// What a router has set: the values of all objects that can be read and set, and the rows of all tables that can be
// set. Read for export, and by import to find what differs.
#pragma once

#include "client/rows/table_rows.h"

namespace kobd::client
{
struct RouterState
{
    Values values = {};
    TableRows rows = {};  // an entry for each table that export knows
};

// Whether export and import know the object: it can be read and set, requests by its name reach it, and both its
// accessors are its own. An object that shares an accessor reads or changes another object's value: lteLockband5g,
// for example, reads the LTE lock. The time of day is left out: it would make each export another one.
bool IsExported(const ObjectEntry& object);

// Whether they know the table: its rows can be set, and it is not another name for the rows of another table.
bool IsExported(const TableEntry& table);

// Whether they know the column: it is not another name for a column, the list does not keep its text itself, and it is
// no counter that the router counts itself.
bool IsExported(const TableEntry& table, const ColumnDef& column);

// The values that the row has in the columns that export knows.
Assignments ExportedValues(const TableEntry& table, const Row& row);

// Reads all of it. A failure begins with `what`.
Failure ReadRouter(const Options& options, const std::string& what, RouterState* state);
}  // namespace kobd::client
