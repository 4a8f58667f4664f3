// Rows of tables, read from the items of a reply or of a dump file.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "client/dictionary/dictionary.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct Row
{
    int32_t index;
    Assignments values = {};  // of the columns, in the order in which they came

    // The value in this column, empty when the row has none.
    std::string ValueOf(std::string_view column) const;
};

using TableRows = std::map<std::string, std::vector<Row>>;  // by the name of the table
using Tables = std::vector<const TableEntry*>;

// Appends the rows that the items hold: table name, index and pairs of column name and value, one row after the
// other. False when the items are in another order.
[[nodiscard]] bool AppendRows(const Items& items, TableRows* rows);

// Has the daemon write all rows of the tables to a dump file, and reads and removes it. `rows` then has an entry for
// each of the tables. A failure begins with `what`.
Failure DumpRows(const Options& options, const std::string& what, const Tables& tables, TableRows* rows);
}  // namespace kobd::client
