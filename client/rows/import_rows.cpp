// Deleting, adding and filling rows, and putting the old ones back.
#include "client/rows/import_rows.h"

#include "client/rows/row_change.h"

namespace kobd::client
{
namespace
{
Failure DeleteRows(const Options& options, const RowAddresses& rows)
{
    for (const RowAddress& row : rows)
        if (Failure failure = DeleteRow(options, row)) return failure;
    return {};
}

// Adds a row and reads it back into `there`. It has no values where the list makes a row only when it is set.
Failure AddOne(const Options& options, const TableEntry& table, Row* there)
{
    if (Failure failure = AddRow(options, table, &there->index)) return failure;
    TableRows present;
    if (Failure failure = DumpRows(options, "table dump", {&table}, &present))
    {
        if (const Failure more = DeleteRow(options, {&table, there->index})) failure.what += "; " + more.what;
        return failure;
    }
    for (const Row& row : present[table.name])
        if (row.index == there->index) *there = row;
    return {};
}

void Append(const Failure& more, Failure* failure)
{
    if (more) *failure = {more.code, failure->what + (*failure ? "; " : "") + more.what};
}

// Adds the rows and fills them: `together` in one request, so that all are checked before the first is filled, else
// each by itself. `added` gets those that exist afterwards.
Failure AddEach(const Options& options, const TableEntry& table, const std::vector<Assignments>& rows, bool together,
                RowAddresses* added)
{
    RowChanges changes;
    Failure failures;
    for (const Assignments& wanted : rows)
    {
        Row there = {kNoIndexYet};
        if (const Failure failure = AddOne(options, table, &there))
        {
            Append(failure, &failures);
            return failures;
        }
        const bool made_by_set = there.values.empty();
        const RowChange change = {{&table, there.index}, made_by_set ? wanted : Missing(there, wanted)};
        Failure failure;
        if (!change.values.empty() && together && !made_by_set)
            changes.push_back(change);
        else if (!change.values.empty())
            failure = SendChanges(options, {change});
        if (!failure || !made_by_set) added->push_back(change.row);
        Append(failure, &failures);
        if (failure && together) return failures;
    }
    Append(SendChanges(options, changes), &failures);
    return failures;
}

// Adds the rows, or none of them.
Failure AddRows(const Options& options, const TablePlan& plan)
{
    RowAddresses added;
    Failure failure = AddEach(options, *plan.table, plan.wanted, true, &added);
    if (failure) Append(DeleteRows(options, added), &failure);
    return failure;
}

// Adds the old rows again and fills each by itself, so that one that the daemon refuses now does not spoil the others.
Failure PutBack(const Options& options, const TablePlan& plan)
{
    std::vector<Assignments> rows;
    for (const Row& row : plan.old) rows.push_back(ExportedValues(*plan.table, row));
    RowAddresses added;
    return AddEach(options, *plan.table, rows, false, &added);
}

Failure ReplaceInPlace(const Options& options, const TablePlan& plan)
{
    RowChanges changes;
    for (size_t i = 0; i < plan.wanted.size(); ++i)
        if (Assignments missing = Missing(plan.old[i], plan.wanted[i]); !missing.empty())
            changes.push_back({{plan.table, plan.old[i].index}, std::move(missing)});
    return SendChanges(options, changes);
}
}  // namespace

Failure ReplaceRows(const Options& options, const TablePlan& plan)
{
    if (plan.InPlace()) return ReplaceInPlace(options, plan);
    RowAddresses old;
    for (const Row& row : plan.old) old.push_back({plan.table, row.index});
    Failure failure = AddRows(options, plan);
    if (!failure) return DeleteRows(options, old);
    if (old.empty()) return failure;
    if (Failure left = DeleteRows(options, old)) return left;
    failure = AddRows(options, plan);
    if (!failure) return {};
    const Failure lost = PutBack(options, plan);
    failure.what += lost ? "; these earlier rows could not be restored: " + lost.what
                         : "; the earlier rows are restored, under new indexes";
    return failure;
}
}  // namespace kobd::client
