// Reading the history.
#include "client/state/past_changes.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "client/dictionary/dictionary.h"
#include "daemon/base/result.h"
#include "host/state/folder.h"
#include "host/state/history.h"

namespace kobd::client
{
namespace
{
std::optional<std::string> TextOf(const host::Query& query, int column)
{
    return query.IsNull(column) ? std::nullopt : std::optional(std::string(query.Text(column)));
}

constexpr std::string_view kDaemon = "kobd";  // the author of what it notes by itself

// What the system calls kobctl: its own name, or that of an emulator.
const std::string& OwnProgram()
{
    static std::string name;
    if (name.empty() && host::ReadText("/proc/self/comm", &name)) name.erase(name.find_last_not_of('\n') + 1);
    return name;
}

// Whether both are of one command: commits of one kobctl, or of any program that adds a row and then fills it.
bool IsOneStep(const PastChange& newer, const PastChange& older)
{
    constexpr int64_t kPause = 1;  // seconds: in a batch, one process runs many commands
    if (newer.batch == older.batch) return true;
    if (newer.process != older.process || newer.program != older.program || newer.time - older.time > kPause)
        return false;
    const bool same_row = newer.IsRow() && newer.name == older.name && newer.number == older.number;
    return newer.program == OwnProgram() || (same_row && older.IsRowItself() && older.now);
}

// Whether a step has changed something in the end: more than rows that came and went.
bool HasEffect(std::span<PastChange* const> step)
{
    std::map<std::pair<std::string, int32_t>, std::pair<bool, bool>> rows;  // whether each was and is there
    for (const PastChange* change : step)
    {
        if (!change->IsRow()) return true;
        auto& [was, is] =
            rows.try_emplace({change->name, change->number}, !change->IsRowItself() || change->old, true).first->second;
        if (change->IsRowItself()) is = change->now.has_value();
    }
    return std::ranges::any_of(rows, [](const auto& row) { return row.second.first || row.second.second; });
}

// Where the history has dropped older changes, the oldest step may have lost its beginning, and is none.
void CountSteps(bool dropped, std::vector<PastChange>* changes)
{
    std::vector<PastChange*> others;
    for (PastChange& change : *changes)
        if (change.program != kDaemon && !change.IsAction()) others.push_back(&change);
    int steps = 0;
    bool blocked = false;
    for (size_t begin = others.size(), end = begin; end > 0; end = begin)
    {
        for (--begin; begin > 0 && IsOneStep(*others[begin], *others[begin - 1]);) --begin;
        const std::span<PastChange* const> step(&others[begin], end - begin);
        if (!HasEffect(step) || (dropped && begin == 0)) continue;
        ++steps;
        blocked = blocked || std::ranges::any_of(step, &PastChange::IsSecret);
        for (PastChange* change : step)
        {
            change->step = steps;
            change->can_return = !blocked;
        }
    }
}
}  // namespace

bool PastChange::IsSecret() const { return old == host::kSecretText || now == host::kSecretText; }

bool PastChange::IsAction() const
{
    const ObjectEntry* object = kind == "object" ? FindObject(name) : nullptr;
    return object != nullptr && object->access == Access::kAction;
}

std::string PastChange::Name() const
{
    if (IsRow()) return name + " " + std::to_string(number) + (field.empty() ? "" : " " + field);
    return kind == "object" ? name : kind + " " + name;
}

Failure ReadPastChanges(std::vector<PastChange>* changes)
{
    const host::State state;
    const bool opened = state->Open(false);
    bool dropped = false;
    if (!opened && state->Error() == ENOENT) return {};
    if (opened)
        for (host::Query query =
                 state->Ask("SELECT batch, time, process, program, kind, name, number, field, old, new, id"
                            " FROM history ORDER BY id");
             query.Next();)
        {
            dropped = dropped || (changes->empty() && query.Number(10) > 1);
            changes->push_back({query.Number(0), query.Number(1), query.Number(2), std::string(query.Text(3)),
                                std::string(query.Text(4)), std::string(query.Text(5)),
                                static_cast<int32_t>(query.Number(6)), std::string(query.Text(7)), TextOf(query, 8),
                                TextOf(query, 9)});
        }
    CountSteps(dropped, changes);
    if (!state->Failed()) return {};
    return {kSystemError, "cannot read the database in " + host::StateFolderName() + ": " + state->Why()};
}
}  // namespace kobd::client
