// What the imitated router is made to do: read from words, checked, and sent.
#pragma once

#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
struct SimStep
{
    kobd_host_control control;
    Items items = {};
    bool last = false;  // of a row: the one that was added last in its table. A scenario puts in its index
};

inline constexpr char kLastRow[] = "last";

// Reads "set NAME=VALUE...", "row TABLE add ...", "fail ...", "slow ..." or "clear". Fails where the names, numbers or
// texts are wrong; nothing was sent then.
Failure ReadSimStep(const CommandLine& line, SimStep* step);

// Sends the step. `answer` gets the items of the answer.
Failure SendSimStep(const Options& options, const SimStep& step, Items* answer = nullptr);

// The operations that can be made to fail of the object or table; none for an unknown one.
Words SimOperations(const std::string& name);

// Fails for an object that cannot be made to show `value`.
Failure CheckSimValue(const std::string& name, const std::string& value);

// A line of what is simulated.
struct SimLine
{
    std::string name;  // of an object, table or network; empty: the commit
    std::string what;  // "value", "row", "slow", "network", or the operation that fails
    std::string how;
};

// Asks for all that is simulated.
Failure ReadSimLines(const Options& options, std::vector<SimLine>* lines);

// The same for a command that only mentions it: nothing where the imitated router does not answer at once.
std::vector<SimLine> SimLinesInPassing();

// What the lines say of the object or table: "shows -120", "set fails", "row 2 deleted".
Words SimNotes(const std::vector<SimLine>& lines, const std::string& name);

// Whether the object shows a value that is simulated, also as that of another object.
bool ShowsSimulated(const std::vector<SimLine>& lines, const std::string& name);
}  // namespace kobd::client
