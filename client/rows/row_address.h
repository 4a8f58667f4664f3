// Tables and rows that words name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/rows/table_rows.h"

namespace kobd::client
{
inline constexpr int32_t kNoIndexYet = -1;  // of a row that is still to be added

struct RowAddress
{
    const TableEntry* table;
    int32_t index;

    bool operator==(const RowAddress&) const = default;
    std::string Text() const;  // "FwUrlFilterTable 3"; the table alone where there is no index yet
};

using RowAddresses = std::vector<RowAddress>;

// Finds the table of this name. The failure says which name was probably meant.
Failure ReadTable(const std::string& name, const TableEntry** table);

// Finds the tables of these names, each once.
Failure ReadTables(const Words& names, Tables* tables);

// Reads a row index from 0 to 2147483647.
Failure ReadRowIndex(const std::string& text, int32_t* index);

// Reads a table and the indexes of rows that follow it.
Failure ReadRows(const Words& table_and_indexes, RowAddresses* rows);

// Asks the daemon whether the rows exist. `missing` names the first one that does not, with the rows that its table
// has; it stays empty when all exist. A failure to ask begins with `what`.
Failure FindMissingRow(const Options& options, const std::string& what, const RowAddresses& rows, std::string* missing);
}  // namespace kobd::client
