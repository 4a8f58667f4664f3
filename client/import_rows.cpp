// Deleting, adding and filling rows, and putting the old ones back.
#include "client/import_rows.h"

#include "client/row_change.h"
#include "client/table_commands.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
std::string CodeText(int code) { return std::string(ResultText(code)) + " (" + std::to_string(code) + ")"; }

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

std::string Fill(const Options& options, const std::vector<RowChange>& changes)
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

// Adds empty rows, as many as `rows`. `changes` becomes what they are to be given, `added` all that
// were added. What went wrong, or the empty text.
std::string AddEmpty(const Options& options, const TableEntry& table, const std::vector<ColumnValues>& rows,
                     std::vector<int32_t>* added, std::vector<RowChange>* changes)
{
    for (size_t i = 0; i < rows.size(); ++i)
    {
        const Response response = Call(kRequestTableAdd, {Item(kTagTableName, table.name)}, options.timeout_ms);
        if (response.code != 0) return "no row added: " + CodeText(response.code);
        if (response.items.empty() || !response.items[0].number) return "the reply to add holds no index";
        added->push_back(*response.items[0].number);
    }
    std::vector<TableRow> present;
    std::string error;
    if (const int code = DumpRows(options, {&table}, &present, &error).code; code != 0) error = CodeText(code);
    for (size_t i = 0; i < rows.size() && error.empty(); ++i)
        for (const TableRow& row : present)
            if (row.index == (*added)[i])
                if (ColumnValues missing = Missing(row, rows[i]); !missing.empty())
                    changes->push_back({{&table, row.index}, std::move(missing)});
    return error;
}

// Adds the rows and fills them in one request, so that all are checked before the first holds
// anything. After a refusal they are deleted again.
std::string AddRows(const Options& options, const TableEntry& table, const std::vector<ColumnValues>& rows)
{
    if (rows.empty()) return "";
    std::vector<int32_t> added;
    std::vector<RowChange> changes;
    std::string why = AddEmpty(options, table, rows, &added, &changes);
    if (why.empty()) why = Fill(options, changes);
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
    std::vector<RowChange> changes;
    std::string why = AddEmpty(options, *plan.table, rows, &added, &changes);
    for (const RowChange& change : changes) why += Fill(options, {change});
    return why;
}

std::string ReplaceInPlace(const Options& options, const TablePlan& plan)
{
    std::vector<RowChange> changes;
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
