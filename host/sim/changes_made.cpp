// One failure is remembered: whoever asks, asks at once.
#include "host/sim/changes_made.h"

namespace kobd::host
{
namespace
{
struct Requester
{
    uint32_t process;
    int32_t connection;
    bool operator==(const Requester&) const = default;
};

Requester in_hand = {};
int32_t changed = 0;  // by the request in hand

Requester failed_for = {};
FailedChange failed = {};
}  // namespace

void ChangesBegin(uint32_t process, int32_t connection)
{
    in_hand = {process, connection};
    changed = 0;
    if (failed_for == in_hand) failed_for = {};
}

int NoteChange(SimTarget target, int32_t index, int code)
{
    if (code == 0)
    {
        ++changed;
        return 0;
    }
    failed_for = in_hand;
    failed = {target, index, changed};
    return code;
}

const FailedChange* LastFailedChange(uint32_t process, int32_t connection)
{
    return failed_for == Requester{process, connection} && process != 0 ? &failed : nullptr;
}
}  // namespace kobd::host
