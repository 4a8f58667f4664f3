// Simulated values, failures and delays.
#include "host/sim/simulator.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <map>

#include "daemon/base/messages.h"
#include "host/sim/moving.h"

namespace kobd::host
{
namespace
{
constexpr std::array<std::string_view, 6> kOperations = {"get", "set", "add", "del", "next", "commit"};

struct Value
{
    std::string name;
    std::string text;
};

// What an operation meets: a code to fail with, or a delay.
struct Trouble
{
    SimTarget target;
    std::string name;
    SimOperation operation;  // kAny: a delay, of each operation
    int amount;              // the code, or milliseconds
    int left;                // how often it still happens, 0: always
};

struct Simulator
{
    std::map<size_t, Value> values;
    std::vector<Trouble> troubles;
};
Simulator simulator;

// Marks what has a value, a failure or a delay, and what moves by itself.
void MarkAll()
{
    MarkMoving(&sim_marks);
    for (const auto& [object, value] : simulator.values) sim_marks.object[object] = 1;
    for (const Trouble& trouble : simulator.troubles)
    {
        if (trouble.target.kind == SimKind::kObject) sim_marks.object[trouble.target.number] = 1;
        if (trouble.target.kind == SimKind::kTable) sim_marks.table[trouble.target.number] = 1;
    }
}

std::vector<Trouble>::iterator Find(SimTarget target, SimOperation operation)
{
    return std::ranges::find_if(simulator.troubles, [&](const Trouble& trouble)
                                { return trouble.target == target && trouble.operation == operation; });
}

// The amount of the trouble that the operation meets, once more; 0: none.
int Meet(SimTarget target, SimOperation operation)
{
    const auto found = Find(target, operation);
    if (found == simulator.troubles.end()) return 0;
    const int amount = found->amount;
    if (found->left > 0 && --found->left == 0)
    {
        simulator.troubles.erase(found);
        MarkAll();
    }
    return amount;
}

void Add(Trouble trouble)
{
    const auto found = Find(trouble.target, trouble.operation);
    if (found != simulator.troubles.end())
        *found = std::move(trouble);
    else
        simulator.troubles.push_back(std::move(trouble));
    MarkAll();
}

void Sleep(int milliseconds)
{
    timespec left = {milliseconds / 1000, milliseconds % 1000 * 1000000L};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) continue;
}

uint16_t TagOf(SimKind kind)
{
    return kind == SimKind::kObject ? kTagObjectName : kind == SimKind::kTable ? kTagTableName : kTagValue;
}
}  // namespace

SimMarks sim_marks = {};

SimOperation SimOperationOf(std::string_view name)
{
    const auto found = std::ranges::find(kOperations, name);
    return static_cast<SimOperation>(found - kOperations.begin());
}

int SimAsk(SimTarget target, SimOperation operation)
{
    if (simulator.troubles.empty()) return 0;
    if (const int milliseconds = Meet(target, SimOperation::kAny)) Sleep(milliseconds);
    return Meet(target, operation);
}

const std::string* SimValue(size_t object)
{
    const auto found = simulator.values.find(object);
    return found == simulator.values.end() ? nullptr : &found->second.text;
}

void SimValueIsSet(size_t object)
{
    if (simulator.values.erase(object) != 0) MarkAll();
}

void SimSetValue(size_t object, std::string_view name, std::string_view value)
{
    simulator.values.insert_or_assign(object, Value{std::string(name), std::string(value)});
    sim_marks.object[object] = 1;
}

void SimFail(SimTarget target, std::string_view name, SimOperation operation, int code, int times)
{
    Add({target, std::string(name), operation, code, times});
}

void SimSlow(SimTarget target, std::string_view name, int milliseconds, int times)
{
    Add({target, std::string(name), SimOperation::kAny, milliseconds, times});
}

void SimClear()
{
    simulator = {};
    MarkAll();
}

std::vector<SimLine> SimLines()
{
    std::vector<SimLine> lines;
    for (const auto& [object, value] : simulator.values)
        lines.push_back({kTagObjectName, value.name, "value", value.text});
    for (const Trouble& trouble : simulator.troubles)
    {
        const bool slow = trouble.operation == SimOperation::kAny;
        lines.push_back({TagOf(trouble.target.kind), trouble.name,
                         slow ? "slow" : std::string(kOperations[static_cast<size_t>(trouble.operation)]),
                         std::to_string(trouble.amount) + " " + std::to_string(trouble.left)});
    }
    return lines;
}
}  // namespace kobd::host
