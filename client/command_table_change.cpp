// kobctl table set, add and del.
#include <algorithm>
#include <cstdio>

#include "client/change_file.h"
#include "client/column_value.h"
#include "client/nearest.h"
#include "client/table_commands.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
struct RowChange
{
    Row row;
    std::vector<std::pair<std::string, std::string>> values;  // column, value
};

// Adds the word "COLUMN=VALUE" to the change. 0, or the exit status after an error line.
int AddValue(const Options& options, const std::string& word, RowChange* change)
{
    const size_t equals = word.find('=');
    const std::string column = word.substr(0, equals);
    if (equals == std::string::npos || equals == 0)
    {
        const std::string near = NearestTable(word);
        Fail(options, kInvalidArgument, "'" + word + "' is neither COLUMN=VALUE nor a table" + DidYouMean(near));
        return 2;
    }
    change->values.emplace_back(column, word.substr(equals + 1));
    int code = 0;
    const std::string wrong = WhatIsWrong(*change->row.first, column, change->values.back().second, &code);
    if (wrong.empty()) return 0;
    const std::string row = change->row.second < 0 ? "" : " " + std::to_string(change->row.second);
    return FailRequest(options, code, false, change->row.first->name + row + ": " + wrong);
}

// Reads groups of TABLE INDEX COLUMN=VALUE... 0, or the exit status after an error line.
int ReadChanges(const Options& options, const Words& words, std::vector<RowChange>* changes)
{
    for (size_t i = 0; i < words.size();)
    {
        RowChange change;
        change.row.first = TableOrFail(options, words[i++]);
        if (change.row.first == nullptr) return 1;
        const std::string name = change.row.first->name;
        if (!IndexOrFail(options, i < words.size() ? words[i++] : "", &change.row.second)) return 2;
        for (; i < words.size() && FindTable(words[i]) == nullptr; ++i)
            if (const int status = AddValue(options, words[i], &change)) return status;
        if (change.values.empty())
        {
            Fail(options, kInvalidArgument, name + " " + std::to_string(change.row.second) + " needs COLUMN=VALUE");
            return 2;
        }
        changes->push_back(change);
    }
    return 0;
}

std::vector<Row> RowsOf(const std::vector<RowChange>& changes)
{
    std::vector<Row> rows;
    for (const RowChange& change : changes) rows.push_back(change.row);
    return rows;
}

// Has the daemon apply the changes from a change file that is gone when this returns. `error` says
// what kept the file from being written.
Response SendChanges(const Options& options, const std::vector<RowChange>& changes, std::string* error)
{
    Items items;
    for (const RowChange& change : changes)
    {
        items.emplace_back(kTagTableName, change.row.first->name);
        items.emplace_back(kTagRowIndex, change.row.second);
        for (const auto& [column, value] : change.values)
        {
            items.emplace_back(kTagColumnName, column);
            items.emplace_back(kTagValue, value);
        }
    }
    ChangeFile file;
    *error = file.Write(items);
    if (!error->empty()) return {.code = kSystemError};
    return Call(options.silent ? kRequestTableSetSilent : kRequestTableSet, {Item(kTagValue, file.Path())},
                options.timeout_ms);
}

// The rows with their new values and the checks that they had to pass.
std::string ChangeTexts(const std::vector<RowChange>& changes)
{
    std::string out = changes.size() > 1 ? "one of these rows was refused: " : "";
    for (const RowChange& change : changes)
    {
        if (&change != &changes.front()) out += ", ";
        out += change.row.first->name + (" " + std::to_string(change.row.second));
        for (const auto& [column, value] : change.values) out += " " + column + "=" + value;
        if (*change.row.first->validator != 0) out += std::string(" (checked by ") + change.row.first->validator + ")";
    }
    return out;
}

std::string WhyChangesRefused(const Options& options, int code, const std::vector<RowChange>& changes)
{
    if (code == kIndexNotFound || code == kMethodUnavailable) return WhyRefused(options, code, kSet, RowsOf(changes));
    return ChangeTexts(changes);
}

// The rows of one batch are written one after the other: a row that is not there would stop the
// daemon halfway, so it is found out first. 0 or the exit status after an error line.
int FailWhenRowIsMissing(const Options& options, const std::vector<RowChange>& changes)
{
    std::vector<const TableEntry*> tables;
    for (const RowChange& change : changes)
        if (std::find(tables.begin(), tables.end(), change.row.first) == tables.end())
            tables.push_back(change.row.first);
    std::vector<TableRow> rows;
    std::string error;
    const Response response = DumpRows(options, tables, &rows, &error);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "table set");
    if (!error.empty()) return Fail(options, kSystemError, "table set: " + error);
    for (const RowChange& change : changes)
    {
        const auto same = [&](const TableRow& row)
        { return row.table == change.row.first->name && row.index == change.row.second; };
        if (std::none_of(rows.begin(), rows.end(), same))
            return FailRequest(options, kIndexNotFound, false,
                               WhyRefused(options, kIndexNotFound, kSet, {change.row}) + "; nothing was set");
    }
    return 0;
}

// Takes back a row that could not be filled; how that went, for the end of an error line.
std::string TakeBack(const Options& options, const Row& row)
{
    const Items items = {Item(kTagTableName, row.first->name), Item(kTagRowIndex, row.second)};
    const Response response = Call(kRequestTableDel, items, options.timeout_ms);
    const std::string name = "the new row " + std::to_string(row.second);
    if (response.code == 0) return "; " + name + " was taken back";
    return "; " + name + " remains, it could not be taken back (" + ResultText(response.code) + ")";
}

// Adds an empty row. 0 and its index, or the exit status after an error line.
int AddRow(const Options& options, const TableEntry& table, int32_t* index)
{
    const bool below = !options.parent.empty();
    Items items = {Item(kTagTableName, table.name)};
    if (below) items.emplace_back(kTagParentPath, options.parent);
    const Response response = Call(below ? kRequestSubTableAdd : kRequestTableAdd, items, options.timeout_ms);
    if (response.from_bus || response.too_large)
        return FailRequest(options, response.code, response.from_bus, "table add");
    if (response.code != 0)
        return FailRequest(options, response.code, false,
                           WhyRefused(options, response.code, below ? kSetParentPath : kAdd, {{&table, 0}}));
    if (response.items.empty() || !response.items[0].number)
        return Fail(options, kSystemError, "table add: the reply holds no index");
    *index = *response.items[0].number;
    return 0;
}
// Fills a row that was just added, or takes it back. 0, or the exit status after an error line.
int FillRow(const Options& options, const RowChange& change)
{
    std::string why;
    const Response response = SendChanges(options, {change}, &why);
    if (response.code == 0) return 0;
    if (why.empty() && response.from_bus) why = "table add";
    if (why.empty()) why = WhyChangesRefused(options, response.code, {change});
    return FailRequest(options, response.code, false, why + TakeBack(options, change.row));
}
}  // namespace

int TableSet(const Options& options, const Words& words)
{
    std::vector<RowChange> changes;
    if (const int status = ReadChanges(options, words, &changes)) return status;
    if (changes.size() > 1)
        if (const int status = FailWhenRowIsMissing(options, changes)) return status;
    std::string error;
    const Response response = SendChanges(options, changes, &error);
    if (!error.empty()) return Fail(options, kSystemError, "table set: " + error);
    if (response.from_bus) return FailRequest(options, response.code, true, "table set");
    if (response.code != 0)
        return FailRequest(options, response.code, false, WhyChangesRefused(options, response.code, changes));
    return 0;
}

int TableAdd(const Options& options, const Words& words)
{
    RowChange change = {{TableOrFail(options, words[0]), -1}, {}};
    const TableEntry* table = change.row.first;
    if (table == nullptr) return 1;
    for (size_t i = 1; i < words.size(); ++i)
        if (const int status = AddValue(options, words[i], &change)) return status;
    if (!change.values.empty() && table->Has(kAdd) && !table->Has(kSet))
        return FailRequest(options, kMethodUnavailable, false,
                           WhyRefused(options, kMethodUnavailable, kSet, {change.row}) + "; nothing was added");
    if (const int status = AddRow(options, *table, &change.row.second)) return status;
    if (!change.values.empty())
        if (const int status = FillRow(options, change)) return status;
    if (options.json)
        printf("{\"table\":\"%s\",\"index\":%d}\n", table->name, change.row.second);
    else
        printf("%d\n", change.row.second);
    return 0;
}

int TableDel(const Options& options, const Words& words)
{
    const TableEntry* table = TableOrFail(options, words[0]);
    if (table == nullptr) return 1;
    std::vector<int32_t> indexes;
    if (!IndexesOrFail(options, words, &indexes)) return 2;
    std::string deleted;
    for (const int32_t index : indexes)
    {
        const Items items = {Item(kTagTableName, table->name), Item(kTagRowIndex, index)};
        const Response response = Call(kRequestTableDel, items, options.timeout_ms);
        if (response.code != 0)
        {
            const std::string why =
                response.from_bus ? "table del" : WhyRefused(options, response.code, kDel, {{table, index}});
            const std::string before = deleted.empty() ? "" : "; deleted before it: " + deleted;
            return FailRequest(options, response.code, response.from_bus, why + before);
        }
        deleted += (deleted.empty() ? "" : ", ") + std::to_string(index);
    }
    return 0;
}
}  // namespace kobd::client
