// The commands of "kobctl table", and what they have in common. Each takes the words after its own
// name and returns the exit status: 0, 1 refused or failed, 2 wrong use.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "client/commands/commands.h"
#include "client/dictionary/tables.h"
#include "client/rows/table_rows.h"

namespace kobd::client
{
int TableList(const Options& options, const Words& pattern);
int TableDescribe(const Options& options, const Words& tables);
int TableColumns(const Options& options, const Words& table);
int TableMax(const Options& options, const Words& table);
int TableDump(const Options& options, const Words& tables);
int TableGet(const Options& options, const Words& table_and_indexes);
int TableSet(const Options& options, const Words& changes);
int TableAdd(const Options& options, const Words& table_and_values);
int TableDel(const Options& options, const Words& table_and_indexes);

// Prints one table as describe does; `separator` goes before its JSON.
void DescribeTable(const Options& options, const TableEntry& table, const char* separator);

// The table of this name, or nullptr after an error line that says which name was meant.
const TableEntry* TableOrFail(const Options& options, const std::string& name);

// A row index in decimal digits. False after an error line.
bool IndexOrFail(const Options& options, const std::string& text, int32_t* index);

// The indexes that follow the name of the table. False after an error line.
bool IndexesOrFail(const Options& options, const Words& table_and_indexes, std::vector<int32_t>* indexes);

// Reads all rows of the tables through a dump file, which is removed. On failure `error` says what
// went wrong where the code of the response alone does not.
Response DumpRows(const Options& options, const std::vector<const TableEntry*>& tables, std::vector<TableRow>* rows,
                  std::string* error);

using RowAddress = std::pair<const TableEntry*, int32_t>;  // table, index

// Why the daemon refused `operation` on the rows with this result code, as the start of an error
// line: which row there is not and which ones there are, the maximum, or the operation missing.
// Asks the daemon again where that takes knowing the rows.
std::string Refusal(const Options& options, int code, Operation operation, const std::vector<RowAddress>& rows);
}  // namespace kobd::client
