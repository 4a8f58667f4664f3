// kobctl table list, describe and columns, from the catalogue alone; table max, from the daemon.
#include <cstdio>

#include "client/commands/table_commands.h"
#include "client/dictionary/column_value.h"
#include "client/dictionary/dictionary.h"
#include "client/output/grid.h"
#include "client/requests/request.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
std::string Operations(const TableEntry& table, bool json)
{
    std::string out;
    for (const std::string& name : OperationNames(table))
        out += (out.empty() ? "" : json ? "," : " ") + (json ? JsonString(name) : name);
    return out;
}

std::string ColumnsJson(const TableEntry& table)
{
    std::string out;
    for (const ColumnDef& column : table.layout.columns)
    {
        out += std::string(out.empty() ? "" : ",") + "{\"name\":" + JsonString(column.name) + ",\"type\":\"" +
               ColumnTypeName(column.type) + "\",\"width\":" + std::to_string(FieldWidth(column)) +
               ",\"takes\":" + JsonString(Takes(column));
        if (column.alias_of != nullptr) out += ",\"alias_of\":" + JsonString(column.alias_of);
        out += "}";
    }
    return out;
}

std::string AliasText(const ColumnDef& column)
{
    return column.alias_of != nullptr ? std::string("another name of ") + column.alias_of : "";
}

void PrintList(const std::vector<const TableEntry*>& tables)
{
    Grid grid = {{"table", "rows", "operations"}, {false, true, false}, {}};
    for (const TableEntry* table : tables)
        grid.lines.push_back({table->name, std::to_string(table->max_rows), Operations(*table, false)});
    PrintTable(grid);
}

void PrintListJson(const std::vector<const TableEntry*>& tables)
{
    const char* separator = "[";
    for (const TableEntry* table : tables)
    {
        printf("%s{\"name\":%s,\"max_rows\":%u,\"operations\":[%s]}", separator, JsonString(table->name).c_str(),
               table->max_rows, Operations(*table, true).c_str());
        separator = ",";
    }
    printf("]\n");
}

std::string Heading(const TableEntry& table)
{
    std::string out = std::string(table.name) + "\n  rows        at most " + std::to_string(table.max_rows) + ", of " +
                      std::to_string(table.layout.row_size) + " bytes\n  operations  " + Operations(table, false) +
                      "\n";
    const char* rule = RuleOf(table.validator);
    if (*table.validator != 0)
        out += std::string("  checked     by ") + table.validator + (rule != nullptr ? std::string(": ") + rule : "") +
               "\n";
    if (table.list_of != std::string_view(table.name)) out += std::string("  same rows   as ") + table.list_of + "\n";
    return out;
}
}  // namespace

void DescribeTable(const Options& options, const TableEntry& table, const char* separator)
{
    if (options.json)
    {
        printf(
            "%s{\"name\":%s,\"kind\":\"table\",\"row_size\":%u,\"max_rows\":%u,\"operations\":[%s],\"validator\":\"%"
            "s\","
            "\"list_of\":%s,\"columns\":[%s]}",
            separator, JsonString(table.name).c_str(), table.layout.row_size, table.max_rows,
            Operations(table, true).c_str(), table.validator, JsonString(table.list_of).c_str(),
            ColumnsJson(table).c_str());
        return;
    }
    printf("%s", Heading(table).c_str());
    Grid grid = {{"  column", table.Has(kSet) ? "takes" : "holds"}, {false, false}, {}};
    for (const ColumnDef& column : table.layout.columns)
    {
        const std::string alias = AliasText(column);
        grid.lines.push_back({std::string("  ") + column.name, Takes(column) + (alias.empty() ? "" : "; " + alias)});
    }
    PrintTable(grid);
}

int TableList(const Options& options, const Words& pattern)
{
    std::vector<const TableEntry*> found;
    for (const TableEntry& table : Tables())
        if (pattern.empty() || MatchesName(pattern[0], table.name)) found.push_back(&table);
    if (found.empty()) return Fail(options, kNotFound, "no table matches '" + pattern[0] + "'");
    if (options.json)
        PrintListJson(found);
    else
        PrintList(found);
    return 0;
}

int TableDescribe(const Options& options, const Words& names)
{
    std::vector<const TableEntry*> tables;
    for (const std::string& name : names)
    {
        tables.push_back(TableOrFail(options, name));
        if (tables.back() == nullptr) return 1;
    }
    const char* separator = "";
    if (options.json) printf("[");
    for (const TableEntry* table : tables)
    {
        DescribeTable(options, *table, separator);
        separator = ",";
    }
    if (options.json) printf("]\n");
    return 0;
}

int TableColumns(const Options& options, const Words& name)
{
    const TableEntry* table = TableOrFail(options, name[0]);
    if (table == nullptr) return 1;
    if (options.json) return printf("[%s]\n", ColumnsJson(*table).c_str()) < 0 ? 1 : 0;
    Grid grid = {{"column", "type", "bytes", "alias"}, {false, false, true, false}, {}};
    for (const ColumnDef& column : table->layout.columns)
        grid.lines.push_back(
            {column.name, ColumnTypeName(column.type), std::to_string(FieldWidth(column)), AliasText(column)});
    PrintTable(grid);
    return 0;
}

int TableMax(const Options& options, const Words& name)
{
    const Response response = Call(kRequestTableMaxRow, {Item(kTagTableName, name[0])}, options.timeout_ms);
    if (response.code == kNotFound && TableOrFail(options, name[0]) == nullptr) return 1;
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "table max " + name[0]);
    if (response.items.empty() || !response.items[0].number)
        return Fail(options, kSystemError, "table max " + name[0] + ": the reply holds no number");
    const int32_t most = *response.items[0].number;
    if (options.json)
        printf("{%s:%d}\n", JsonString(name[0]).c_str(), most);
    else
        printf("%d\n", most);
    return 0;
}
}  // namespace kobd::client
