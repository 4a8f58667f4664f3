// Items to rows, rows to a screen.
#include "client/rows/table_rows.h"

#include <cstdio>

#include "client/dictionary/column_value.h"
#include "client/output/grid.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
bool HasType(const TableEntry& table, const std::string& name, bool (*test)(ValueType))
{
    const ColumnDef* column = FindColumn(table, name);
    return column != nullptr && test(column->type);
}

// A number as the daemon writes one: JSON takes it as it is, with no digit lost.
bool IsDecimal(const std::string& text)
{
    const size_t first = text.starts_with('-') ? 1 : 0;
    return text.size() > first && text.find_first_not_of("0123456789", first) == std::string::npos;
}

void PrintJson(const TableEntry& table, const TableRow& row, const char* separator)
{
    printf("%s{\"index\":%d", separator, row.index);
    for (size_t i = 0; i < row.columns.size(); ++i)
    {
        const bool number = HasType(table, row.columns[i], IsNumber) && IsDecimal(row.values[i]);
        const std::string value = number ? row.values[i] : JsonString(row.values[i]);
        printf(",%s:%s", JsonString(row.columns[i]).c_str(), value.c_str());
    }
    printf("}");
}

void PrintJson(const std::vector<const TableEntry*>& tables, const std::vector<TableRow>& rows)
{
    const char* table_separator = "{";
    for (const TableEntry* table : tables)
    {
        printf("%s%s:[", table_separator, JsonString(table->name).c_str());
        const char* separator = "";
        for (const TableRow& row : rows)
        {
            if (row.table != table->name) continue;
            PrintJson(*table, row, separator);
            separator = ",";
        }
        printf("]");
        table_separator = ",";
    }
    printf("}\n");
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
    for (const std::string& name : grid.heading) grid.right.push_back(HasType(table, name, IsNumber));
    if (!grid.right.empty()) grid.right[0] = true;
    return grid;
}
}  // namespace

bool AppendRows(const Items& items, std::vector<TableRow>* rows)
{
    const size_t before = rows->size();
    uint16_t previous = kTagValue;
    for (const Item& item : items)
    {
        const bool in_row = rows->size() > before;
        if (item.tag == kTagTableName && previous == kTagValue)
            rows->push_back({item.text, 0, {}, {}});
        else if (item.tag == kTagRowIndex && previous == kTagTableName && item.number)
            rows->back().index = *item.number;
        else if (item.tag == kTagColumnName && in_row && (previous == kTagRowIndex || previous == kTagValue))
            rows->back().columns.push_back(item.text);
        else if (item.tag == kTagValue && previous == kTagColumnName)
            rows->back().values.push_back(item.text);
        else
            return false;
        previous = item.tag;
    }
    return previous == kTagValue;
}

void PrintRows(const Options& options, const std::vector<const TableEntry*>& tables, const std::vector<TableRow>& rows)
{
    if (options.json) return PrintJson(tables, rows);
    const char* blank_line = "";
    for (const TableEntry* table : tables)
    {
        const Grid grid = GridOf(*table, rows);
        const size_t count = grid.lines.size();
        const std::string number = count == 0 ? "no" : std::to_string(count);
        printf("%s%s, %s row%s\n", blank_line, table->name, number.c_str(), count == 1 ? "" : "s");
        if (count > 0) PrintFitting(grid, DisplayWidth());
        blank_line = "\n";
    }
}
}  // namespace kobd::client
