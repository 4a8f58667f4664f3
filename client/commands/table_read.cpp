// kobctl table dump and table get.
#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/output/grid.h"
#include "client/rows/row_address.h"
#include "client/rows/table_rows.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
bool IsNumberColumn(const TableEntry& table, const std::string& name)
{
    const ColumnDef* column = FindColumn(table, name);
    return column != nullptr && IsNumber(column->type);
}

// The value as a number, where the column has numbers and the text is one.
Json JsonOf(const TableEntry& table, const std::string& column, const std::string& text)
{
    if (!IsNumberColumn(table, column)) return text;
    Json number = Json::parse(text, nullptr, false);
    return number.is_number_integer() && number.dump() == text ? number : Json(text);
}

Json JsonOf(const TableEntry& table, const TableRow& row)
{
    Json out = {{"index", row.index}};
    for (size_t i = 0; i < row.columns.size(); ++i) out[row.columns[i]] = JsonOf(table, row.columns[i], row.values[i]);
    return out;
}

Grid GridOf(const TableEntry& table, const std::vector<TableRow>& rows)
{
    Grid grid;
    for (const TableRow& row : rows)
    {
        if (row.table != table.name) continue;
        if (grid.heading.empty())
        {
            grid.heading.emplace_back("index");
            grid.heading.insert(grid.heading.end(), row.columns.begin(), row.columns.end());
        }
        grid.lines.push_back({std::to_string(row.index)});
        grid.lines.back().insert(grid.lines.back().end(), row.values.begin(), row.values.end());
        grid.lines.back().resize(grid.heading.size());
    }
    for (const std::string& name : grid.heading) grid.right.push_back(IsNumberColumn(table, name));
    if (!grid.right.empty()) grid.right[0] = true;
    return grid;
}

std::string TextOf(const TableEntry& table, const std::vector<TableRow>& rows)
{
    const Grid grid = GridOf(table, rows);
    const size_t count = grid.lines.size();
    const std::string title = std::string(table.name) + ", " +
                              (count == 0   ? "no rows"
                               : count == 1 ? "1 row"
                                            : std::to_string(count) + " rows");
    return title + "\n" + (count > 0 ? FittingText(grid, DisplayWidth()) : "");
}

// The rows, table after table.
Outcome RowsOutcome(const std::vector<const TableEntry*>& tables, const std::vector<TableRow>& rows)
{
    Outcome outcome;
    for (const TableEntry* table : tables)
    {
        Json& out = outcome.data[table->name] = Json::array();
        for (const TableRow& row : rows)
            if (row.table == table->name) out.push_back(JsonOf(*table, row));
        outcome.text += (outcome.text.empty() ? "" : "\n") + TextOf(*table, rows);
    }
    return outcome;
}
}  // namespace

Outcome TableDump(const Options& options, const Words& names)
{
    std::vector<const TableEntry*> tables;
    std::vector<TableRow> rows;
    if (Failure failure = ReadTables(names, &tables)) return failure;
    if (Failure failure = DumpRows(options, "table dump", tables, &rows)) return failure;
    return RowsOutcome(tables, rows);
}

Outcome TableGet(const Options& options, const Words& words)
{
    std::vector<RowAddress> asked;
    if (Failure failure = ReadRows(words, &asked)) return failure;
    std::vector<Items> parts;
    for (const auto& [table, index] : asked)
        parts.push_back({Item(kTagTableName, table->name), Item(kTagRowIndex, index)});
    const Response response = CallInParts(options, KOBD_TABLE_GET, parts);
    if (response.from_bus) return FailureOf(response, "table get");
    if (response.code != 0) return RefusalOf(options, response.code, kGet, asked);
    std::vector<TableRow> rows;
    if (!AppendRows(response.items, &rows)) return Failure{kSystemError, "table get: the reply holds no rows"};
    return RowsOutcome({asked[0].table}, rows);
}
}  // namespace kobd::client
