// kobctl table dump and table get.
#include <algorithm>

#include "client/commands/table_commands.h"
#include "client/requests/dump_file.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
Response DumpRows(const Options& options, const std::vector<const TableEntry*>& tables, std::vector<TableRow>* rows,
                  std::string* error)
{
    Items items;
    for (const TableEntry* table : tables) items.emplace_back(kTagTableName, table->name);
    const Response response = Call(kRequestTableDump, items, options.timeout_ms);
    if (response.code != 0) return response;
    std::string bytes;
    *error = response.items.empty() ? "the reply names no file" : TakeDumpFile(response.items[0].text, &bytes);
    if (!error->empty()) return response;
    const auto read = ReadItems(bytes);
    if (!read || !AppendRows(*read, rows)) *error = "the dump file holds no rows that can be read";
    return response;
}

int TableDump(const Options& options, const Words& names)
{
    std::vector<const TableEntry*> tables;
    for (const std::string& name : names)
    {
        const TableEntry* table = TableOrFail(options, name);
        if (table == nullptr) return 1;
        if (std::find(tables.begin(), tables.end(), table) == tables.end()) tables.push_back(table);
    }
    std::vector<TableRow> rows;
    std::string error;
    const Response response = DumpRows(options, tables, &rows, &error);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "table dump");
    if (!error.empty()) return Fail(options, kSystemError, "table dump: " + error);
    PrintRows(options, tables, rows);
    return 0;
}

int TableGet(const Options& options, const Words& words)
{
    const TableEntry* table = TableOrFail(options, words[0]);
    if (table == nullptr) return 1;
    std::vector<int32_t> indexes;
    if (!IndexesOrFail(options, words, &indexes)) return 2;

    std::vector<Items> parts;
    std::vector<RowAddress> asked;
    for (const int32_t index : indexes)
    {
        parts.push_back({Item(kTagTableName, table->name), Item(kTagRowIndex, index)});
        asked.emplace_back(table, index);
    }
    Items answers;
    const Response response = CallInParts(kRequestTableGet, parts, options.timeout_ms, &answers);
    if (response.from_bus) return FailRequest(options, response.code, true, "table get");
    if (response.code != 0)
        return FailRequest(options, response.code, false, Refusal(options, response.code, kGet, asked));
    std::vector<TableRow> rows;
    if (!AppendRows(answers, &rows)) return Fail(options, kSystemError, "table get: the reply holds no rows");
    PrintRows(options, {table}, rows);
    return 0;
}
}  // namespace kobd::client
