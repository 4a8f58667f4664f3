// kobctl table set, add and del.
#include <algorithm>
#include <cstdio>

#include "client/commands/table_commands.h"
#include "client/rows/change_file.h"
#include "client/rows/row_change.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
int SendChanges(const Options& options, const std::vector<RowChange>& changes, std::string* why)
{
    ChangeFile file;
    *why = file.Write(ChangeItems(changes));
    if (!why->empty()) return kSystemError;
    const LogWindow log;
    const Response response = Call(options.silent ? kRequestTableSetSilent : kRequestTableSet,
                                   {Item(kTagValue, file.Path())}, options.timeout_ms);
    if (response.code == 0) return 0;
    if (response.from_bus)
        *why =
            WhyNoAnswer(options, response.code) + (response.code == kReplyTimeout ? ", see whether it was done" : "");
    if (!response.from_bus) *why = WhyChangesRefused(options, response.code, changes, log.Lines());
    return response.code;
}

namespace
{
// The rows of one batch are written one after the other: a row that is not there would stop the
// daemon halfway, so it is found out first. So it is where rows are checked: the daemon would check an
// empty row and find fault with that. 0 or the exit status after an error line.
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
                               Refusal(options, kIndexNotFound, kSet, {change.row}) + "; nothing was set");
    }
    return 0;
}

// Takes back a row that could not be filled; how that went, for the end of an error line.
std::string TakeBack(const Options& options, const RowAddress& row)
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
        return FailChange(options, response.code, response.from_bus, "table add");
    if (response.code != 0)
        return FailRequest(options, response.code, false,
                           Refusal(options, response.code, below ? kSetParentPath : kAdd, {{&table, 0}}));
    if (response.items.empty() || !response.items[0].number)
        return Fail(options, kSystemError, "table add: the reply holds no index");
    *index = *response.items[0].number;
    return 0;
}
// Fills a row that was just added, or takes it back. 0, or the exit status after an error line.
int FillRow(const Options& options, const RowChange& change)
{
    std::string why;
    const int code = SendChanges(options, {change}, &why);
    return code == 0 ? 0 : FailRequest(options, code, false, why + TakeBack(options, change.row));
}
}  // namespace

int TableSet(const Options& options, const Words& words)
{
    std::vector<RowChange> changes;
    if (const int status = ReadChanges(options, words, &changes)) return status;
    if (changes.size() > 1 || changes.front().row.first->Has(kValidate))
        if (const int status = FailWhenRowIsMissing(options, changes)) return status;
    std::string why;
    if (const int code = SendChanges(options, changes, &why)) return FailRequest(options, code, false, why);
    const char* separator = "{\"set\":[";
    for (const RowChange& change : changes)
    {
        if (!options.json) break;
        printf("%s{\"table\":\"%s\",\"index\":%d}", separator, change.row.first->name, change.row.second);
        separator = ",";
    }
    if (options.json) printf("]}\n");
    return 0;
}

int TableAdd(const Options& options, const Words& words)
{
    RowChange change = {{TableOrFail(options, words[0]), kNoIndexYet}};
    const TableEntry* table = change.row.first;
    if (table == nullptr) return 1;
    for (size_t i = 1; i < words.size(); ++i)
        if (const int status = AddValue(options, words[i], &change)) return status;
    if (!change.values.empty() && table->Has(kAdd) && !table->Has(kSet))
        return FailRequest(options, kMethodUnavailable, false,
                           Refusal(options, kMethodUnavailable, kSet, {change.row}) + "; nothing was added");
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
                response.from_bus ? "table del" : Refusal(options, response.code, kDel, {{table, index}});
            const std::string before = deleted.empty() ? "" : "; deleted before it: " + deleted;
            return FailChange(options, response.code, response.from_bus, why + before);
        }
        deleted += (deleted.empty() ? "" : ", ") + std::to_string(index);
    }
    if (options.json) printf("{\"table\":\"%s\",\"deleted\":[%s]}\n", table->name, deleted.c_str());
    return 0;
}
}  // namespace kobd::client
