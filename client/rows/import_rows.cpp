// Deleting, adding and filling rows, and putting the old ones back.
#include "client/rows/import_rows.h"

#include "client/commands/table_commands.h"
#include "client/rows/row_change.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
using Changes = std::vector<RowChange>;

std::string DeleteRows(const Options& options, const TableEntry& table, const std::vector<int32_t>& indexes)
{
    for (const int32_t index : indexes)
    {
        const Items items = {Item(kTagTableName, table.name), Item(kTagRowIndex, index)};
        const Response response = Call(kRequestTableDel, items, options.timeout_ms);
        if (response.code != 0) return "row " + std::to_string(index) + " not deleted: " + CodeText(response.code);
    }
    return "";
}

std::string Fill(const Options& options, const Changes& changes)
{
    if (changes.empty()) return "";
    std::string why;
    const int code = SendChanges(options, changes, &why);
    return code == 0 ? "" : why + ": " + CodeText(code);
}

// What the row is still to be given. A row that is as it should be is not sent at all: an empty one
// would be refused by many a check, and yet routers have them.
ColumnValues Missing(const TableRow& row, const ColumnValues& wanted)
{
    ColumnValues missing;
    for (const auto& value : wanted)
        if (ValueOf(row, value.first) != value.second) missing.push_back(value);
    return missing;
}

// Adds a row. `there` becomes the row as it then reads; it has no columns where the list makes the row
// only when it is set. What went wrong, or the empty text.
std::string AddOne(const Options& options, const TableEntry& table, TableRow* there)
{
    const Response response = Call(kRequestTableAdd, {Item(kTagTableName, table.name)}, options.timeout_ms);
    if (response.code != 0) return "no row added: " + CodeText(response.code);
    if (response.items.empty() || !response.items[0].number) return "the reply to add holds no index";
    *there = {table.name, *response.items[0].number, {}, {}};
    std::vector<TableRow> present;
    std::string error;
    if (const int code = DumpRows(options, {&table}, &present, &error).code; code != 0) return CodeText(code);
    for (const TableRow& row : present)
        if (row.index == there->index) *there = row;
    return error;
}

// Adds the rows; `added` are the indexes of those that are there afterwards. They are filled in one
// request, so that all are checked before the first holds anything, or each by itself.
std::string AddEach(const Options& options, const TableEntry& table, const std::vector<ColumnValues>& rows,
                    bool together, std::vector<int32_t>* added)
{
    Changes changes;
    std::string why;
    for (const ColumnValues& wanted : rows)
    {
        TableRow there;
        if (const std::string error = AddOne(options, table, &there); !error.empty()) return why + error;
        RowChange change = {{&table, there.index}, Missing(there, wanted)};
        const bool made_by_set = there.columns.empty();
        if (made_by_set) change.values = wanted;
        if (together && !made_by_set && !change.values.empty()) changes.push_back(change);
        const std::string error =
            together && !made_by_set ? "" : Fill(options, change.values.empty() ? Changes{} : Changes{change});
        if (error.empty() || !made_by_set) added->push_back(there.index);
        if (!error.empty()) why += (why.empty() ? "" : "; ") + error;
        if (!error.empty() && together) return why;
    }
    return changes.empty() ? why : why + Fill(options, changes);
}

// Adds the rows, or none of them.
std::string AddRows(const Options& options, const TableEntry& table, const std::vector<ColumnValues>& rows)
{
    std::vector<int32_t> added;
    const std::string why = AddEach(options, table, rows, true, &added);
    if (why.empty()) return "";
    const std::string left = DeleteRows(options, table, added);
    return left.empty() ? why : why + "; " + left;
}

// Adds the old rows again and fills each by itself: one that the daemon does not take any more leaves
// the others whole.
std::string PutBack(const Options& options, const TablePlan& plan)
{
    std::vector<ColumnValues> rows;
    for (const TableRow& row : plan.old)
    {
        rows.emplace_back();
        for (const ColumnDef& column : plan.table->layout.columns)
            if (IsExported(column)) rows.back().emplace_back(column.name, ValueOf(row, column.name));
    }
    std::vector<int32_t> added;
    return AddEach(options, *plan.table, rows, false, &added);
}

std::string ReplaceInPlace(const Options& options, const TablePlan& plan)
{
    Changes changes;
    for (size_t i = 0; i < plan.wanted.size(); ++i)
        if (ColumnValues missing = Missing(plan.old[i], plan.wanted[i]); !missing.empty())
            changes.push_back({{plan.table, plan.old[i].index}, std::move(missing)});
    return Fill(options, changes);
}
}  // namespace

std::string ReplaceRows(const Options& options, const TablePlan& plan)
{
    if (plan.InPlace()) return ReplaceInPlace(options, plan);
    std::vector<int32_t> old;
    for (const TableRow& row : plan.old) old.push_back(row.index);
    std::string why = AddRows(options, *plan.table, plan.wanted);
    if (why.empty()) return DeleteRows(options, *plan.table, old);
    if (old.empty()) return why;
    if (const std::string left = DeleteRows(options, *plan.table, old); !left.empty()) return left;
    why = AddRows(options, *plan.table, plan.wanted);
    if (why.empty()) return "";
    const std::string lost = PutBack(options, plan);
    return why + (lost.empty() ? "; the rows before are back" : "; of the rows before these are not back: " + lost);
}
}  // namespace kobd::client
