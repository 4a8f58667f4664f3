// Changes of rows, and why the daemon refuses them.
#include "client/rows/row_change.h"

#include <algorithm>

#include "client/dictionary/column_value.h"
#include "client/dictionary/names.h"
#include "client/requests/log_window.h"
#include "client/rows/change_file.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
Items ChangeItems(const RowChanges& changes)
{
    Items items;
    for (const RowChange& change : changes)
    {
        items.emplace_back(kTagTableName, change.row.table->name);
        items.emplace_back(kTagRowIndex, change.row.index);
        for (const auto& [column, value] : change.values)
        {
            items.emplace_back(kTagColumnName, column);
            items.emplace_back(kTagValue, value);
        }
    }
    return items;
}

// The last line that a check of these rows wrote; nullptr when none did.
const LogLine* CheckLine(const RowChanges& changes, const std::vector<LogLine>& log)
{
    const auto by_check = [&](const LogLine& line)
    {
        return std::any_of(changes.begin(), changes.end(),
                           [&](const RowChange& change) { return line.function == change.row.table->validator; });
    };
    const auto found = std::find_if(log.rbegin(), log.rend(), by_check);
    return found == log.rend() ? nullptr : &*found;
}

std::string ChangeText(const RowChange& change)
{
    std::string out = change.row.Text();
    for (const Assignment& value : change.values) out += " " + value.Text();
    return out;
}

// The rows that the check may have refused, all of them when no check said anything.
std::string ChangeTexts(const RowChanges& changes, const LogLine* said)
{
    Words texts;
    for (const RowChange& change : changes)
        if (said == nullptr || said->function == change.row.table->validator) texts.push_back(ChangeText(change));
    return (texts.size() > 1 ? "one of these rows: " : "") + Joined(texts);
}

// Why the daemon refused the changes. The check of a row writes its reason to the log.
Failure WhyRefused(const Options& options, int code, const RowChanges& changes, const std::vector<LogLine>& log)
{
    const RowAddresses rows = RowsOf(changes);
    const bool all_can_be_set = std::ranges::all_of(rows, [](const RowAddress& row) { return row.table->Has(kSet); });
    if (code == kIndexNotFound || !all_can_be_set) return RefusalOf(options, code, kSet, rows);
    const LogLine* said = CheckLine(changes, log);
    std::string out = ChangeTexts(changes, said);
    if (said != nullptr) out += ": " + said->message + " (" + said->function + ")";
    if (said != nullptr || changes.size() == 1)
        out += RuleOf(said != nullptr ? said->function : rows.front().table->validator, "; it takes ");
    return FailureWithCode(code, out);
}
}  // namespace

Failure ReadColumnValue(const std::string& word, Assignments* values)
{
    if (ReadAssignment(word, values)) return {};
    return {kWrongUse, "'" + word + "' is neither COLUMN=VALUE nor a table" + DidYouMean(word, AllNames(kTableRows))};
}

Failure ReadChanges(const Words& words, RowChanges* changes)
{
    for (size_t i = 0; i < words.size();)
    {
        RowChange change = {{nullptr, kNoIndexYet}};
        if (Failure failure = ReadTable(words[i++], &change.row.table)) return failure;
        if (Failure failure = ReadRowIndex(i < words.size() ? words[i++] : "", &change.row.index)) return failure;
        for (; i < words.size() && FindTable(words[i]) == nullptr; ++i)
            if (Failure failure = ReadColumnValue(words[i], &change.values)) return failure;
        changes->push_back(change);
    }
    return {};
}

Failure CheckColumns(const RowChange& change)
{
    for (const auto& [column, value] : change.values)
    {
        int code = 0;
        const std::string wrong = WhatIsWrong(*change.row.table, column, value, &code);
        if (!wrong.empty()) return FailureWithCode(code, change.row.Text() + ": " + wrong);
    }
    return {};
}

RowAddresses RowsOf(const RowChanges& changes)
{
    RowAddresses rows;
    for (const RowChange& change : changes) rows.push_back(change.row);
    return rows;
}

Failure SendChanges(const Options& options, const RowChanges& changes)
{
    if (changes.empty()) return {};
    ChangeFile file;
    const Items items = ChangeItems(changes);
    if (Failure failure = file.Write(items)) return failure;
    Options waiting = options;  // for the tables that the file names
    waiting.timeout_ms = TimeoutFor(options, items);
    const LogWindow log;
    const kobd_request request = options.silent ? KOBD_TABLE_SET_SILENT : KOBD_TABLE_SET;
    const Response response = Call(waiting, request, {Item(kTagValue, file.Path())});
    if (response.code == 0 || response.from_bus) return FailureOfChange(response, "table set");
    return WhyRefused(options, response.code, changes, log.Lines());
}

Failure AddRow(const Options& options, const TableEntry& table, int32_t* index)
{
    const bool below = !options.parent.empty();
    Items items = {Item(kTagTableName, table.name)};
    if (below) items.emplace_back(kTagParentPath, options.parent);
    const Response response = Call(options, below ? KOBD_SUB_TABLE_ADD : KOBD_TABLE_ADD, items);
    if (response.from_bus || response.too_large) return FailureOfChange(response, "table add");
    if (response.code != 0)
        return RefusalOf(options, response.code, below ? kSetParentPath : kAdd, {{&table, kNoIndexYet}});
    if (response.items.empty() || !response.items[0].number)
        return {kSystemError, "table add: the reply holds no index"};
    *index = *response.items[0].number;
    return {};
}

Failure DeleteRow(const Options& options, const RowAddress& row)
{
    const Items items = {Item(kTagTableName, row.table->name), Item(kTagRowIndex, row.index)};
    const Response response = Call(options, KOBD_TABLE_DEL, items);
    if (response.code == 0 || response.from_bus) return FailureOfChange(response, "table del");
    return RefusalOf(options, response.code, kDel, {row});
}
}  // namespace kobd::client
