// kobctl undo [COUNT]: values and rows as they were.
#include <unistd.h>

#include <algorithm>
#include <map>

#include "client/arguments/words.h"
#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/output/terminal.h"
#include "client/rows/row_change.h"
#include "client/state/daemon_state.h"
#include "client/state/past_changes.h"
#include "daemon/base/result.h"
#include "host/state/stores.h"

namespace kobd::client
{
namespace
{
// A row that undo has to bring back, change or delete.
struct RowBefore
{
    std::optional<bool> was_there = {};  // nothing: it neither came nor went
    bool is_there = true;
    std::string parent = {};
    std::map<std::string, std::string> columns = {};  // texts of then
};

// Everything that undo has to do.
struct Before
{
    std::map<std::string, std::string> objects = {};
    std::map<std::pair<std::string, int32_t>, RowBefore> rows = {};
    std::map<std::pair<std::string, std::string>, std::optional<std::string>> stores = {};  // by store and key
};

// Takes a change into the account; to be called from the newest change to the oldest.
void TakeBack(const PastChange& change, Before* before)
{
    if (change.kind == "object") before->objects[change.name] = change.old.value_or("");
    if (change.kind == "nvram" || change.kind == "config") before->stores[{change.kind, change.name}] = change.old;
    if (!change.IsRow()) return;
    RowBefore& row = before->rows[{change.name, change.number}];
    if (change.IsRowItself())
    {
        if (!row.was_there) row.is_there = change.now.has_value();
        row.was_there = change.old.has_value();
    }
    else if (change.field == "@path")
        row.parent = change.old.value_or("");
    else
        row.columns[change.field] = change.old.value_or("");
}

// Collects what the last so many steps changed, the newest first.
Failure CollectSteps(const std::vector<PastChange>& changes, int64_t steps, Before* before)
{
    for (auto change = changes.rbegin(); change != changes.rend(); ++change)
    {
        if (change->step == 0 || change->step > steps) continue;
        if (change->IsSecret())
            return {kInvalidArgument,
                    change->Name() + ": the old value of a secret is not kept, so that undo cannot go back beyond it"};
        TakeBack(*change, before);
    }
    return {};
}

Failure CheckObject(const std::string& name, const std::string& value)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr) return {kNotFound, NoSuchName("object", name)};
    if (object->access != Access::kReadWrite)
        return {kInvalidArgument, name + " cannot be set: " + AccessText(object->access)};
    if (const std::string wrong = WhatIsWrong(name, value); !wrong.empty()) return {kInvalidArgument, wrong};
    return {};
}

// The requests that undo sends, all checked.
struct Plan
{
    Assignments objects = {};
    std::vector<RowChange> set = {};
    std::vector<RowAddress> deleted = {};
    std::vector<std::pair<RowChange, std::string>> added = {};  // with the parent's path
    Words lost = {};                                            // columns of those that this version has not
};

Failure PlanRow(const std::pair<std::string, int32_t>& address, const RowBefore& before, Plan* plan)
{
    RowChange change = {{nullptr, address.second}};
    if (Failure failure = ReadTable(address.first, &change.row.table)) return failure;
    if (before.is_there && before.was_there == false)
    {
        plan->deleted.push_back(change.row);
        return {};
    }
    if (!before.is_there && before.was_there != true) return {};
    for (const auto& [column, value] : before.columns)
        if (before.is_there || FindColumn(*change.row.table, column) != nullptr)
            change.values.push_back({column, value});
        else
            plan->lost.push_back(change.row.Text() + " " + column);
    if (Failure failure = CheckColumns(change)) return failure;
    if (before.is_there)
        plan->set.push_back(change);
    else
        plan->added.emplace_back(change, before.parent);
    return {};
}

Failure MakePlan(const Before& before, Plan* plan)
{
    for (const auto& [name, value] : before.objects)
    {
        if (Failure failure = CheckObject(name, value)) return failure;
        plan->objects.push_back({name, value});
    }
    for (const auto& [address, row] : before.rows)
        if (Failure failure = PlanRow(address, row, plan)) return failure;
    return {};
}

Failure AddAgain(const Options& options, const RowChange& deleted, const std::string& parent, Words* done)
{
    RowChange change = deleted;
    Options with_parent = options;
    with_parent.parent = parent;
    if (Failure failure = AddRow(with_parent, *change.row.table, &change.row.index)) return failure;
    done->push_back(deleted.row.Text() +
                    (change.row.index == deleted.row.index ? "" : " as row " + std::to_string(change.row.index)));
    return change.values.empty() ? Failure() : SendChanges(options, {change});
}

// `done` names what is as it was, also when a later step fails.
Failure CarryOut(const Options& options, const Plan& plan, const Before& before, Words* done)
{
    if (!plan.objects.empty())
    {
        Response response;
        Values now;
        if (Outcome outcome = SetValues(options, plan.objects, &response, &now); outcome.failure)
            return outcome.failure;
        for (const Assignment& object : plan.objects) done->push_back(object.name);
    }
    if (!plan.set.empty())
    {
        if (Failure failure = SendChanges(options, plan.set)) return failure;
        for (const RowChange& change : plan.set) done->push_back(change.row.Text());
    }
    for (const RowAddress& row : plan.deleted)
    {
        if (Failure failure = DeleteRow(options, row)) return failure;
        done->push_back(row.Text());
    }
    for (const auto& [change, parent] : plan.added)
        if (Failure failure = AddAgain(options, change, parent, done)) return failure;
    for (const auto& [key, value] : before.stores)
    {
        const std::string why = value ? host::StoreSet(key.first.c_str(), key.second, *value, getpid())
                                      : host::StoreUnset(key.first.c_str(), key.second, getpid());
        if (!why.empty()) return {kSystemError, key.first + " " + key.second + ": " + why};
        done->push_back(key.first + " " + key.second);
    }
    return {};
}
}  // namespace

Outcome CommandUndo(const Options& options, const Words& words)
{
    constexpr int64_t kMost = 10000;  // changes that the history keeps
    const auto steps = words.empty() ? 1 : ReadInteger(words[0], 1, kMost);
    if (!steps) return Failure{kWrongUse, "undo takes a number of changes, not '" + words[0] + "'"};
    if (!UseDaemonsState())
    {
        const Response response = Call(options, KOBD_GET, {});
        return Failure{kNotRunning, "undo: " + (response.from_bus ? response.reason : "this router keeps no history")};
    }
    const auto not_committed = NotCommitted();
    if (!not_committed) return Failure{KOBD_TIMEOUT, "undo: kobd is busy, try again; nothing was changed"};
    if (!not_committed->empty())
        return Failure{kInvalidArgument,
                       "undo: set since the last commit: " + Joined(*not_committed) +
                           "; run kobctl commit first, then undo takes that back; nothing was changed"};
    std::vector<PastChange> changes;
    if (Failure failure = ReadPastChanges(&changes)) return Failure{failure.code, "undo: " + failure.what};
    int recorded = 0;
    for (const PastChange& change : changes) recorded = std::max(recorded, change.step);
    if (recorded == 0) return Failure{kInvalidArgument, "undo: no change is recorded that could be taken back"};
    if (*steps > recorded)
        return Failure{kInvalidArgument, "undo: only " + std::to_string(recorded) +
                                             (recorded == 1 ? " change is" : " changes are") +
                                             " recorded; nothing was changed"};
    Before before;
    Plan plan;
    Failure refused = CollectSteps(changes, *steps, &before);
    if (!refused) refused = MakePlan(before, &plan);
    if (refused) return Failure{refused.code, "undo: " + refused.what + "; nothing was changed"};
    Words done;
    const Failure failure = CarryOut(options, plan, before, &done);
    Words shown = done;
    for (std::string& name : shown)
        if (const auto object = before.objects.find(name); object != before.objects.end())
            name += "=" + ShownInLine(object->second);
    Outcome outcome({{"undone", done}}, done.empty() ? "" : "as before: " + Joined(shown) + "\n");
    if (!failure && !plan.lost.empty())
    {
        outcome.data["lost"] = plan.lost;
        outcome.text += "but for what this version of kobd has not: " + Joined(plan.lost) + "\n";
    }
    if (failure) outcome.failure = {failure.code, "undo: " + failure.what};
    AddNotSaved(options, "undone", &outcome);
    return outcome;
}
}  // namespace kobd::client
