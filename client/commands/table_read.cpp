// kobctl table dump and table get.
#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/output/terminal.h"
#include "client/rows/row_address.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
bool IsNumberColumn(const TableEntry& table, const std::string& name)
{
    const ColumnDef* column = FindColumn(table, name);
    return column != nullptr && IsNumber(column->type);
}

Json JsonOf(const TableEntry& table, const Row& row)
{
    Json out = {{"index", row.index}};
    for (const auto& [column, value] : row.values)
        out[column] = ValueJson(kobd_describe_column(table.name, column.c_str()), value);
    return out;
}

Grid GridOf(const TableEntry& table, const std::vector<Row>& rows)
{
    Grid grid = {{"index"}, {true}, {}};
    for (const Assignment& first : rows.front().values)
    {
        grid.heading.push_back(first.name);
        grid.right.push_back(IsNumberColumn(table, first.name));
    }
    for (const Row& row : rows)
    {
        Words& line = grid.lines.emplace_back(Words{std::to_string(row.index)});
        for (const Assignment& one : row.values) line.push_back(one.value);
        line.resize(grid.heading.size());
    }
    return grid;
}

// Leaves of each row the columns that are asked for, in their order.
Failure ChooseColumns(const Words& asked, const Tables& tables, TableRows* rows)
{
    for (const TableEntry* table : tables)
    {
        for (const std::string& name : asked)
            if (const Fault fault = FindColumn(*table, name) != nullptr ? Fault() : JudgeCell(*table, name, ""))
                return FailureWithCode(fault.code, std::string(table->name) + ": " + fault.reason);
        for (Row& row : (*rows)[table->name])
        {
            Assignments chosen;
            for (const std::string& name : asked) chosen.push_back({name, row.ValueOf(name)});
            if (!asked.empty()) row.values = chosen;
        }
    }
    return {};
}

// The rows, table after table.
Outcome RowsOutcome(const Options& options, const Tables& tables, TableRows rows)
{
    Outcome outcome;
    if (Failure failure = ChooseColumns(options.columns, tables, &rows)) return failure;
    for (const TableEntry* table : tables)
    {
        const std::vector<Row>& present = rows[table->name];
        Json& out = outcome.data[table->name] = Json::array();
        for (const Row& row : present) out.push_back(JsonOf(*table, row));
        outcome.text += (outcome.text.empty() ? "" : "\n") + std::string(table->name) + ", " +
                        (present.empty() ? "no rows" : Counted(present.size(), "row")) + "\n" +
                        (present.empty() ? "" : FittingText(GridOf(*table, present), DisplayWidth()));
    }
    return outcome;
}
}  // namespace

Outcome TableDump(const Options& options, const Words& words)
{
    Tables tables;
    TableRows rows;
    Words names;
    Words dumpable;
    for (const TableEntry& table : kTableRows)
        if (table.Has(kNext)) dumpable.emplace_back(table.name);
    if (Failure failure = ReadNames(options, words, "table with rows to read", dumpable, &names)) return failure;
    if (Failure failure = ReadTables(names, &tables)) return failure;
    if (Failure failure = DumpRows(options, "table dump", tables, &rows)) return failure;
    return RowsOutcome(options, tables, rows);
}

Outcome TableGet(const Options& options, const Words& words)
{
    RowAddresses asked;
    if (Failure failure = ReadRows(words, &asked)) return failure;
    TableRows rows;
    for (const auto& [table, index] : asked)
    {
        Row& row = rows[table->name].emplace_back(Row{index});
        const Response response = ReadOneRow(options, table->name, &row);
        if (response.from_bus) return FailureOf(response, "table get");
        if (response.code != 0) return Failure{response.code, response.why};
    }
    return RowsOutcome(options, {asked[0].table}, rows);
}
}  // namespace kobd::client
