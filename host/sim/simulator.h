// What a client makes the imitated router show, refuse and delay. It is lost with the daemon, and no commit writes it.
// All of it belongs to the receive thread.
//
// Objects are known by the number of the row that defines the accessor; the values of objects by the number of the
// object that keeps the value. Tables are known by the number of the row that defines the list.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/catalogue/view.h"

namespace kobd::host
{
enum class SimKind
{
    kObject,
    kTable,
    kCommit,
};

struct SimTarget
{
    SimKind kind;
    size_t number;
    bool operator==(const SimTarget&) const = default;
};
inline constexpr SimTarget kSimCommit = {SimKind::kCommit, 0};

enum class SimOperation
{
    kGet,
    kSet,
    kAdd,
    kDel,
    kNext,
    kCommit,
    kAny,  // of a delay
};

// The operation of this name, "get"; kAny for a name that is none.
SimOperation SimOperationOf(std::string_view name);

// Which objects and tables the simulator has anything to say about: the one look that an operation costs without it.
struct SimMarks
{
    std::array<uint8_t, kObjectRows.size()> object;
    std::array<uint8_t, kTableRows.size()> table;
};
extern SimMarks sim_marks;

// -- operations ask

// Waits as long as the operation is to be delayed. Returns the code that it is to fail with, 0 for none.
int SimAsk(SimTarget target, SimOperation operation);

inline int SimAskTable(size_t number, SimOperation operation)
{
    return sim_marks.table[number] == 0 ? 0 : SimAsk({SimKind::kTable, number}, operation);
}

// The simulated value of the object, or nullptr.
const std::string* SimValue(size_t object);

// The object was really set: what was simulated of its value is over.
void SimValueIsSet(size_t object);

// -- clients change it

// `name` is what the client called it. A failure or delay replaces the one that the same operation has. times: how
// often, 0: always. All may run out of memory, and nothing has changed then.
void SimSetValue(size_t object, std::string_view name, std::string_view value);
void SimFail(SimTarget target, std::string_view name, SimOperation operation, int code, int times);
void SimSlow(SimTarget target, std::string_view name, int milliseconds, int times);
inline constexpr int kSimSlowMost = 60000;  // milliseconds

// Ends all values, failures and delays.
void SimClear();

// One line of what is simulated, as a client reads it.
struct SimLine
{
    uint16_t tag;  // of the name: kTagObjectName, kTagTableName; kTagValue for the router as a whole
    std::string name;
    std::string what;  // "value", "row", "slow", "network", or an operation that fails: "get"
    std::string how;   // the value; "5 added"; milliseconds or code and, after a blank, times
};
std::vector<SimLine> SimLines();
}  // namespace kobd::host
