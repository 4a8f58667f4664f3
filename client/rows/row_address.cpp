// Reading tables and rows, and the words for refusals.
#include "client/rows/row_address.h"

#include <algorithm>

#include "client/dictionary/nearest.h"
#include "client/rows/table_rows.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string RowTexts(const std::vector<RowAddress>& rows)
{
    Words texts;
    for (const RowAddress& row : rows) texts.push_back(row.Text());
    return Joined(texts);
}

const char* NameOf(Operation operation)
{
    switch (operation)
    {
        case kAdd: return "add";
        case kDel: return "del";
        case kGet: return "get";
        case kSet: return "set";
        case kSetParentPath: return "setPPath";
        case kNext: return "next";
        case kValidate: return "validate";
    }
    return "";
}

// The first of the rows that is not in its table, with the rows that are.
std::string MissingRow(const Options& options, const std::vector<RowAddress>& rows)
{
    for (const RowAddress& row : rows)
    {
        std::vector<TableRow> present;
        if (DumpRows(options, "", {row.table}, &present)) continue;
        Words indexes;
        for (const TableRow& one : present) indexes.push_back(std::to_string(one.index));
        const std::string index = std::to_string(row.index);
        if (std::find(indexes.begin(), indexes.end(), index) != indexes.end()) continue;
        return std::string(row.table->name) + " has no row " + index +
               (indexes.empty() ? ", it is empty" : ", there is " + Joined(indexes));
    }
    return RowTexts(rows);
}

std::string MissingOperation(Operation operation, const std::vector<RowAddress>& rows)
{
    for (const auto& [table, index] : rows)
        for (const Operation needed : {operation == kSetParentPath ? kAdd : operation, operation})
            if (!table->Has(needed))
                return std::string(table->name) + " has no " + NameOf(needed) + " operation, it has " +
                       Joined(OperationNames(*table));
    return RowTexts(rows);
}

std::string RefusalText(const Options& options, int code, Operation operation, const std::vector<RowAddress>& rows)
{
    const TableEntry& first = *rows.front().table;
    switch (code)
    {
        case kIndexNotFound: return MissingRow(options, rows);
        case kMethodUnavailable: return MissingOperation(operation, rows);
        case kTableFull:
            return std::string(first.name) + " holds " + std::to_string(first.max_rows) + " rows, its maximum";
        case kBufferLimit:
            return RowTexts(rows) + " does not fit one reply, kobctl table dump " + first.name + " shows it";
        default: return operation == kAdd || operation == kSetParentPath ? first.name : RowTexts(rows);
    }
}
}  // namespace

std::string RowAddress::Text() const { return table->name + (" " + std::to_string(index)); }

Failure ReadTable(const std::string& name, const TableEntry** table)
{
    *table = FindTable(name);
    if (*table != nullptr) return {};
    return Refused(kNotFound, "there is no table " + name + DidYouMean(NearestTable(name)));
}

Failure ReadTables(const Words& names, std::vector<const TableEntry*>* tables)
{
    for (const std::string& name : names)
    {
        const TableEntry* table = nullptr;
        if (Failure failure = ReadTable(name, &table)) return failure;
        if (std::find(tables->begin(), tables->end(), table) == tables->end()) tables->push_back(table);
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

Failure ReadRows(const Words& table_and_indexes, std::vector<RowAddress>* rows)
{
    RowAddress row = {nullptr, 0};
    if (Failure failure = ReadTable(table_and_indexes[0], &row.table)) return failure;
    for (size_t i = 1; i < table_and_indexes.size(); ++i)
    {
        if (Failure failure = ReadRowIndex(table_and_indexes[i], &row.index)) return failure;
        rows->push_back(row);
    }
    return {};
}

Failure RefusalOf(const Options& options, int code, Operation operation, const std::vector<RowAddress>& rows)
{
    return Refused(code, RefusalText(options, code, operation, rows));
}
}  // namespace kobd::client
