// Reading tables and rows, and the words for refusals.
#include "client/rows/row_address.h"

#include <algorithm>

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string RowTexts(const RowAddresses& rows)
{
    Words texts;
    for (const RowAddress& row : rows) texts.push_back(row.Text());
    return Joined(texts);
}

void AddOnce(const TableEntry* table, Tables* tables)
{
    if (std::ranges::find(*tables, table) == tables->end()) tables->push_back(table);
}

std::string RefusalText(const Options& options, int code, Operation operation, const RowAddresses& rows)
{
    const TableEntry& first = *rows.front().table;
    std::string missing;
    switch (code)
    {
        case kIndexNotFound:
            return FindMissingRow(options, "", rows, &missing) || missing.empty() ? RowTexts(rows) : missing;
        case kMethodUnavailable: return MissingOperation(operation, rows);
        case kTableFull:
            return std::string(first.name) + " holds " + std::to_string(first.max_rows) + " rows, its maximum";
        case kBufferLimit:
            return RowTexts(rows) + " does not fit one reply, kobctl table dump " + first.name + " shows it";
        default: return RowTexts(rows);
    }
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
        Words indexes;
        for (const Row& row : present[table->name]) indexes.push_back(std::to_string(row.index));
        if (std::ranges::find(indexes, std::to_string(index)) != indexes.end()) continue;
        *missing = std::string(table->name) + " has no row " + std::to_string(index) +
                   (indexes.empty() ? ", it is empty" : ", it has " + Joined(indexes));
        return {};
    }
    return {};
}

std::string MissingOperation(Operation operation, const RowAddresses& rows)
{
    for (const auto& [table, index] : rows)
        for (const Operation needed : {operation == kSetParentPath ? kAdd : operation, operation})
            if (!table->Has(needed))
                return std::string(table->name) + " has no " + Joined(OperationNames(needed)) + " operation, it has " +
                       Joined(OperationNames(table->operations));
    return RowTexts(rows);
}

Failure RefusalOf(const Options& options, int code, Operation operation, const RowAddresses& rows)
{
    return FailureWithCode(code, RefusalText(options, code, operation, rows));
}
}  // namespace kobd::client
