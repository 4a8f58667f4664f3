// kobctl table list, describe and columns, from the catalogue alone; table max, from the daemon.
#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/rows/row_address.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
Json ColumnsJson(const TableEntry& table)
{
    Json columns = Json::array();
    for (const ColumnDef& column : table.layout.columns)
    {
        const kobd_description& described = *kobd_describe_column(table.name, column.name);
        columns.push_back({{"name", column.name},
                           {"type", ColumnTypeName(column.type)},
                           {"width", FieldWidth(column)},
                           {"accepts", Takes(column)},
                           {"meaning", described.meaning != nullptr ? described.meaning : ""},
                           {"unit", described.unit != nullptr ? described.unit : ""}});
        if (column.alias_of != nullptr) columns.back()["alias_of"] = column.alias_of;
    }
    return columns;
}

std::string AliasText(const ColumnDef& column)
{
    return column.alias_of != nullptr ? std::string("another name of ") + column.alias_of : "";
}

std::string Heading(const TableEntry& table)
{
    const std::string validator = table.validator;
    const char* meaning = kobd_describe_table(table.name)->meaning;
    std::string out =
        std::string(table.name) + "\n" + (meaning != nullptr ? std::string("  meaning     ") + meaning + "\n" : "") +
        "  rows        at most " + std::to_string(table.max_rows) + ", of " + std::to_string(table.layout.row_size) +
        " bytes\n  operations  " + Joined(OperationNames(table.operations), " ") + "\n";
    if (!validator.empty()) out += "  checked     by " + validator + RuleOf(validator, ": ") + "\n";
    if (table.list_of != std::string_view(table.name)) out += std::string("  same rows   as ") + table.list_of + "\n";
    return out;
}
}  // namespace

Outcome DescribedTable(const TableEntry& table)
{
    Grid grid = {{"  column", table.Has(kSet) ? "takes" : "holds", "meaning"}, {false, false, false}, {}};
    for (const ColumnDef& column : table.layout.columns)
    {
        const std::string alias = AliasText(column);
        const kobd_description& described = *kobd_describe_column(table.name, column.name);
        grid.lines.push_back({std::string("  ") + column.name, Takes(column) + (alias.empty() ? "" : "; " + alias),
                              MeaningText(described.meaning, described.unit)});
    }
    const char* meaning = kobd_describe_table(table.name)->meaning;
    Json data = {{"name", table.name},
                 {"kind", "table"},
                 {"meaning", meaning != nullptr ? meaning : ""},
                 {"row_size", table.layout.row_size},
                 {"max_rows", table.max_rows},
                 {"operations", OperationNames(table.operations)},
                 {"validator", table.validator},
                 {"list_of", table.list_of},
                 {"columns", ColumnsJson(table)}};
    return {std::move(data), Heading(table) + TableText(grid)};
}

Outcome TableList(const Options& options, const Words& pattern)
{
    Grid grid = {{"table", "rows", "operations"}, {false, true, false}, {}};
    Json data = Json::array();
    for (const TableEntry& table : kTableRows)
    {
        if (!pattern.empty() && !MatchesName(pattern[0], table.name, options.exact_case)) continue;
        const Words operations = OperationNames(table.operations);
        grid.lines.push_back({table.name, std::to_string(table.max_rows), Joined(operations, " ")});
        data.push_back({{"name", table.name}, {"max_rows", table.max_rows}, {"operations", operations}});
    }
    if (grid.lines.empty()) return Failure{kNotFound, "no table matches '" + pattern[0] + "'"};
    return {std::move(data), TableText(grid)};
}

Outcome TableDescribe(const Options&, const Words& names)
{
    Tables tables;
    if (Failure failure = ReadTables(names, &tables)) return failure;
    Outcome outcome(Json::array(), "");
    for (const TableEntry* table : tables)
    {
        const Outcome one = DescribedTable(*table);
        outcome.data.push_back(one.data);
        outcome.text += one.text;
    }
    return outcome;
}

Outcome TableColumns(const Options&, const Words& name)
{
    const TableEntry* table = nullptr;
    if (Failure failure = ReadTable(name[0], &table)) return failure;
    Grid grid = {{"column", "type", "bytes", "alias"}, {false, false, true, false}, {}};
    for (const ColumnDef& column : table->layout.columns)
        grid.lines.push_back(
            {column.name, ColumnTypeName(column.type), std::to_string(FieldWidth(column)), AliasText(column)});
    return {ColumnsJson(*table), TableText(grid)};
}

Outcome TableMax(const Options& options, const Words& name)
{
    const Response response = Call(options, KOBD_TABLE_MAX_ROW, {Item(kTagTableName, name[0])});
    const TableEntry* table = nullptr;
    if (response.code == kNotFound)
        if (Failure failure = ReadTable(name[0], &table)) return failure;
    if (Failure failure = FailureOf(response, "table max " + name[0])) return failure;
    if (response.items.empty() || !response.items[0].number)
        return Failure{kSystemError, "table max " + name[0] + ": the reply holds no number"};
    const int32_t most = *response.items[0].number;
    return {{{"table", name[0]}, {"max_rows", most}}, std::to_string(most) + "\n"};
}
}  // namespace kobd::client
