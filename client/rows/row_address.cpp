// Reading tables and rows, and the words for refusals.
#include "client/rows/row_address.h"

#include <algorithm>

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
void AddOnce(const TableEntry* table, Tables* tables)
{
    if (std::ranges::find(*tables, table) == tables->end()) tables->push_back(table);
}
}  // namespace

std::string RowAddress::Text() const { return table->name + (index == kNoIndexYet ? "" : " " + std::to_string(index)); }

Failure ReadTable(const std::string& name, const TableEntry** table)
{
    *table = FindTable(name);
    return *table != nullptr ? Failure() : FailureWithCode(kNotFound, NoSuchName("table", name));
}

Failure ReadTables(const Words& names, Tables* tables)
{
    for (const std::string& name : names)
    {
        const TableEntry* table = nullptr;
        if (Failure failure = ReadTable(name, &table)) return failure;
        AddOnce(table, tables);
    }
    return {};
}

Failure ReadRowIndex(const std::string& text, int32_t* index)
{
    const auto number = ReadInteger(text, 0, INT32_MAX);
    if (!number) return {kWrongUse, "a row index is a number from 0 to 2147483647, not '" + text + "'"};
    *index = static_cast<int32_t>(*number);
    return {};
}

Failure ReadRows(const Words& table_and_indexes, RowAddresses* rows)
{
    RowAddress row = {nullptr, kNoIndexYet};
    if (Failure failure = ReadTable(table_and_indexes[0], &row.table)) return failure;
    for (size_t i = 1; i < table_and_indexes.size(); ++i)
    {
        if (Failure failure = ReadRowIndex(table_and_indexes[i], &row.index)) return failure;
        rows->push_back(row);
    }
    return {};
}

Failure FindMissingRow(const Options& options, const std::string& what, const RowAddresses& rows, std::string* missing)
{
    Tables tables;
    TableRows present;
    for (const RowAddress& row : rows) AddOnce(row.table, &tables);
    if (Failure failure = DumpRows(options, what, tables, &present)) return failure;
    for (const auto& [table, index] : rows)
    {
        std::vector<int32_t> indexes;
        for (const Row& row : present[table->name]) indexes.push_back(row.index);
        if (std::ranges::find(indexes, index) != indexes.end()) continue;
        *missing = NoRow(table->name, index, indexes);
        return {};
    }
    return {};
}
}  // namespace kobd::client
