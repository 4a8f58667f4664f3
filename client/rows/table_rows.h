// Rows of tables, taken from the items of a reply or of a dump file, and how they are shown.
#pragma once

#include <string>
#include <vector>

#include "client/dictionary/tables.h"
#include "client/output/output.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct TableRow
{
    std::string table;
    int32_t index;
    std::vector<std::string> columns;  // names, in the order in which they came
    std::vector<std::string> values;   // one a column
};

// Appends the rows that the items hold: table name, index and pairs of column name and value, any
// number of rows one after the other. False when the items are in another order.
[[nodiscard]] bool AppendRows(const Items& items, std::vector<TableRow>* rows);

// Prints the rows of the tables, table after table: a title and an aligned table, or with --json an
// object of table name to rows. Values of numeric columns become JSON numbers, digit by digit.
void PrintRows(const Options& options, const std::vector<const TableEntry*>& tables, const std::vector<TableRow>& rows);
}  // namespace kobd::client
