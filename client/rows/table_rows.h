// Rows of tables, as the daemon has them.
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

// Reads the columns of the row with this index.
Response ReadOneRow(const Options& options, const std::string& table, Row* row);

// Reads all rows of the tables. `rows` then has an entry for each of them. A failure begins with `what`.
Failure DumpRows(const Options& options, const std::string& what, const Tables& tables, TableRows* rows);
}  // namespace kobd::client
