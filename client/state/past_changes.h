// The history of the state: what each commit changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/output/failure.h"

namespace kobd::client
{
struct PastChange
{
    int64_t batch = 0;  // number of the commit
    int64_t time = 0;   // seconds since 1970
    int64_t process = 0;
    std::string program = {};
    std::string kind = {};  // "object", "row", "nvram" or "config"
    std::string name = {};  // of the object or table; the key
    int32_t number = 0;     // index of a row
    std::string field = {};
    std::optional<std::string> old = {};  // nothing: it was not there
    std::optional<std::string> now = {};
    int step = 0;             // what "kobctl undo STEP" takes back last; 0: it stays, with all that it takes back
    bool can_return = false;  // neither it nor a later step has changed a secret, whose old value is not kept

    bool IsRow() const { return kind == "row"; }
    bool IsRowItself() const { return IsRow() && field.empty(); }  // it was added or deleted
    bool IsSecret() const;
    bool IsAction() const;  // it has started something, which cannot be taken back

    // "webHttpPort", "FwUrlFilterTable 3 URL", "nvram eth_status".
    std::string Name() const;
};

// All that is kept, the oldest first, with their steps. What one command changed is one step, though it took several
// commits. No step: what the daemon noted by itself at an event, actions, and rows that came and went in one
// command.
Failure ReadPastChanges(std::vector<PastChange>* changes);
}  // namespace kobd::client
