// Error lines of the table commands: which table, which row, and what would be right.
#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "client/commands/table_commands.h"
#include "client/dictionary/nearest.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string Joined(const std::vector<std::string>& words, const char* separator)
{
    std::string out;
    for (const std::string& word : words) out += (out.empty() ? "" : separator) + word;
    return out;
}

std::string RowText(const RowAddress& row) { return row.first->name + std::string(" ") + std::to_string(row.second); }

std::string RowTexts(const std::vector<RowAddress>& rows)
{
    std::vector<std::string> texts;
    for (const RowAddress& row : rows) texts.push_back(RowText(row));
    return Joined(texts, ", ");
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

// The row that is not in its table, with the rows that are.
std::string MissingRow(const Options& options, const std::vector<RowAddress>& rows)
{
    for (const RowAddress& row : rows)
    {
        std::vector<TableRow> present;
        std::string error;
        if (DumpRows(options, {row.first}, &present, &error).code != 0 || !error.empty()) continue;
        std::vector<std::string> indexes;
        for (const TableRow& one : present) indexes.push_back(std::to_string(one.index));
        if (std::find(indexes.begin(), indexes.end(), std::to_string(row.second)) != indexes.end()) continue;
        const std::string name = row.first->name;
        if (indexes.empty()) return name + " has no row " + std::to_string(row.second) + ", it is empty";
        return name + " has no row " + std::to_string(row.second) + ", there is " + Joined(indexes, ", ");
    }
    return RowTexts(rows);
}

std::string MissingOperation(Operation operation, const std::vector<RowAddress>& rows)
{
    for (const auto& [table, index] : rows)
        for (const Operation needed : {operation == kSetParentPath ? kAdd : operation, operation})
            if (!table->Has(needed))
                return std::string(table->name) + " has no " + NameOf(needed) + " operation, it has " +
                       Joined(OperationNames(*table), ", ");
    return RowTexts(rows);
}
}  // namespace

const TableEntry* TableOrFail(const Options& options, const std::string& name)
{
    const TableEntry* table = FindTable(name);
    if (table == nullptr)
        FailRequest(options, kNotFound, false, "there is no table " + name + DidYouMean(NearestTable(name)));
    return table;
}

bool IndexOrFail(const Options& options, const std::string& text, int32_t* index)
{
    const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    errno = 0;
    const unsigned long long number = strtoull(text.c_str(), nullptr, 10);
    if (!digits || errno != 0 || number > INT32_MAX)
    {
        WrongUse(options, "a row index is a number from 0 to 2147483647, not '" + text + "'", "table");
        return false;
    }
    *index = static_cast<int32_t>(number);
    return true;
}

bool IndexesOrFail(const Options& options, const Words& table_and_indexes, std::vector<int32_t>* indexes)
{
    for (size_t i = 1; i < table_and_indexes.size(); ++i)
    {
        indexes->push_back(0);
        if (!IndexOrFail(options, table_and_indexes[i], &indexes->back())) return false;
    }
    return true;
}

std::string Refusal(const Options& options, int code, Operation operation, const std::vector<RowAddress>& rows)
{
    const TableEntry& first = *rows.front().first;
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
}  // namespace kobd::client
