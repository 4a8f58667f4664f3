// Rows of tables, read from the items of a reply or of a dump file.
#pragma once

#include <string>
#include <vector>

#include "client/arguments/words.h"
#include "client/dictionary/tables.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct TableRow
{
    std::string table;
    int32_t index;
    Words columns;  // names, in the order in which they came
    Words values;   // one a column

    // The value in this column, empty when the row has none.
    std::string ValueOf(const std::string& column) const;
};

// Appends the rows that the items hold: table name, index and pairs of column name and value, one row after the
// other. False when the items are in another order.
[[nodiscard]] bool AppendRows(const Items& items, std::vector<TableRow>* rows);

// Has the daemon write all rows of the tables to a dump file, and reads and removes it. A failure begins with
// `what`.
Failure DumpRows(const Options& options, const std::string& what, const std::vector<const TableEntry*>& tables,
                 std::vector<TableRow>* rows);
}  // namespace kobd::client
