// Tables and rows that words name, and why the daemon refuses them.
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

// Asks the daemon which of the rows is not there. `missing` says so of the first one, and which rows its table has;
// it stays empty when all are there. A failure to ask begins with `what`.
Failure FindMissingRow(const Options& options, const std::string& what, const RowAddresses& rows, std::string* missing);

// Says which table of the rows has no such operation, and which it has; their addresses when all have it.
std::string MissingOperation(Operation operation, const RowAddresses& rows);

// The words for a result code with which the daemon refused `operation` on the rows: which row is missing and which
// there are, the most rows, or which operation is missing. Asks the daemon where only its rows can tell.
Failure RefusalOf(const Options& options, int code, Operation operation, const RowAddresses& rows);
}  // namespace kobd::client
