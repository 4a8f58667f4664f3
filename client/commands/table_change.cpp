// kobctl table set, add and del.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/rows/row_change.h"
#include "client/state/daemon_state.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// Fails when one of the rows is missing. The daemon would write the rows before it and then stop; in a table with a
// check it would refuse the empty row that it checks in its place.
Failure RequireRows(const Options& options, const RowChanges& changes)
{
    std::string missing;
    if (Failure failure = FindMissingRow(options, "table set", RowsOf(changes), &missing)) return failure;
    if (missing.empty()) return {};
    return {kIndexNotFound, missing + ": " + CodeText(kIndexNotFound) + "; nothing was set"};
}

// Fills a row that was just added. Deletes the row where that fails.
Failure FillRow(const Options& options, const RowChange& change)
{
    Failure failure = SendChanges(options, {change});
    if (!failure) return {};
    const Failure remains = DeleteRow(options, change.row);
    const std::string row = "; the new row " + std::to_string(change.row.index);
    failure.what += row + (remains ? " could not be deleted again: " + remains.what : " was deleted again");
    return failure;
}

// Port forwarding goes by SrcPort, which the router makes of the other two while it is empty and then keeps.
void NoteOldPorts(const RowChange& change)
{
    if (change.row.table->list_of != std::string_view("FwPortForwardTable")) return;
    const auto gives = [&](std::string_view column)
    { return std::ranges::any_of(change.values, [&](const Assignment& value) { return value.name == column; }); };
    if (gives("SrcPort") || !(gives("MinPort") || gives("MaxPort"))) return;
    SayError("note: SrcPort of " + change.row.Text() +
             " keeps its old ports; add SrcPort= to have it made of MinPort " + "and MaxPort");
}
}  // namespace

Outcome TableSet(const Options& options, const Words& words)
{
    RowChanges changes;
    if (Failure failure = ReadChanges(words, &changes)) return failure;
    for (const RowChange& change : changes)
    {
        if (change.values.empty()) return Failure{kWrongUse, change.row.Text() + " needs COLUMN=VALUE"};
        if (Failure failure = CheckColumns(change)) return failure;
    }
    if (changes.size() > 1 || changes.front().row.table->Has(kValidate))
        if (Failure failure = RequireRows(options, changes)) return failure;
    Outcome outcome = SendChanges(options, changes);
    if (outcome.failure && changes.size() > 1 && outcome.failure.code != KOBD_TIMEOUT) AddNotCommitted(&outcome);
    if (outcome.failure) return outcome;
    for (const RowChange& change : changes)
    {
        outcome.data["set"].push_back(JsonOf(change.row));
        NoteOldPorts(change);
    }
    if (!options.silent) AddNotSaved(options, "set", &outcome);
    return outcome;
}

Outcome TableAdd(const Options& options, const Words& words)
{
    RowChange change = {{nullptr, kNoIndexYet}};
    if (Failure failure = ReadTable(words[0], &change.row.table)) return failure;
    for (size_t i = 1; i < words.size(); ++i)
        if (Failure failure = ReadColumnValue(words[i], &change.values)) return failure;
    if (Failure failure = CheckColumns(change)) return failure;
    const TableEntry& table = *change.row.table;
    if (!change.values.empty() && table.Has(kAdd) && !table.Has(kSet))
        return Failure{kMethodUnavailable,
                       NoOperation(table, kSet) + ": " + CodeText(kMethodUnavailable) + "; nothing was added"};
    if (Failure failure = AddRow(options, table, &change.row.index)) return failure;
    if (!change.values.empty())
        if (Failure failure = FillRow(options, change)) return failure;
    Outcome outcome(JsonOf(change.row), std::to_string(change.row.index) + "\n");
    if (change.values.empty() && table.daemon_list)
        SayError("note: row " + std::to_string(change.row.index) + " exists once a column of it is set");
    AddNotSaved(options, "added", &outcome);
    return outcome;
}

Outcome TableDel(const Options& options, const Words& words)
{
    RowAddresses rows;
    if (Failure failure = ReadRows(words, &rows)) return failure;
    for (size_t i = 1; i < rows.size(); ++i)
        for (size_t j = 0; j < i; ++j)
            if (rows[i].index == rows[j].index)
                return Failure{kWrongUse,
                               "row " + std::to_string(rows[i].index) + " is given twice; nothing was deleted"};
    std::string missing;
    if (rows.size() > 1)
        if (Failure failure = FindMissingRow(options, "table del", rows, &missing)) return failure;
    if (!missing.empty()) return FailureWithCode(kIndexNotFound, missing + "; nothing was deleted");
    Words deleted;
    Outcome outcome({{"table", rows[0].table->name}, {"deleted", Json::array()}}, "");
    for (const RowAddress& row : rows)
    {
        if (Failure failure = DeleteRow(options, row))
        {
            if (!deleted.empty()) failure.what += "; deleted before it: " + Joined(deleted);
            return failure;
        }
        deleted.push_back(std::to_string(row.index));
        outcome.data["deleted"].push_back(row.index);
    }
    AddNotSaved(options, "deleted", &outcome);
    return outcome;
}
}  // namespace kobd::client
