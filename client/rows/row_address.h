// Tables and rows that words name, and why the daemon refuses them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/arguments/words.h"
#include "client/dictionary/tables.h"
#include "client/requests/request.h"

namespace kobd::client
{
struct RowAddress
{
    const TableEntry* table;
    int32_t index;

    std::string Text() const;  // "FwUrlFilterTable 3"
};

// Finds the table of this name. The failure says which name was probably meant.
Failure ReadTable(const std::string& name, const TableEntry** table);

// Finds the tables of these names, each once.
Failure ReadTables(const Words& names, std::vector<const TableEntry*>* tables);

// Reads a row index from 0 to 2147483647.
Failure ReadRowIndex(const std::string& text, int32_t* index);

// Reads a table and the indexes of rows that follow it.
Failure ReadRows(const Words& table_and_indexes, std::vector<RowAddress>* rows);

// The words for a result code with which the daemon refused `operation` on the rows: which row is missing and which
// there are, the most rows, or which operation is missing. Asks the daemon where only its rows can tell.
Failure RefusalOf(const Options& options, int code, Operation operation, const std::vector<RowAddress>& rows);
}  // namespace kobd::client
