// The failures of the last clients: whoever asks, asks at once.
#include "host/sim/changes_made.h"

#include <algorithm>
#include <array>

namespace kobd::host
{
namespace
{
struct Requester
{
    uint32_t process = 0;
    int32_t connection = 0;
    bool operator==(const Requester&) const = default;
};

struct Remembered
{
    Requester requester = {};
    FailedChange failed = {};
};

Requester in_hand;
int32_t changed = 0;  // by the request in hand
std::array<Remembered, 64> remembered;
size_t oldest = 0;
bool any = false;  // a request pays for a look only once something has failed

Remembered* Find(const Requester& requester)
{
    const auto found = std::ranges::find(remembered, requester, &Remembered::requester);
    return found != remembered.end() ? &*found : nullptr;
}
}  // namespace

void ChangesBegin(uint32_t process, int32_t connection)
{
    in_hand = {process, connection};
    changed = 0;
    if (Remembered* last = any ? Find(in_hand) : nullptr) *last = {};
}

int NoteChange(SimTarget target, int32_t index, int code)
{
    if (code == 0)
    {
        ++changed;
        return 0;
    }
    Remembered* place = Find(in_hand);
    if (place == nullptr)
    {
        place = &remembered[oldest];
        oldest = (oldest + 1) % remembered.size();
    }
    *place = {in_hand, {target, index, changed}};
    any = true;
    return code;
}

const FailedChange* LastFailedChange(uint32_t process, int32_t connection)
{
    const Remembered* found = process != 0 ? Find({process, connection}) : nullptr;
    return found != nullptr ? &found->failed : nullptr;
}
}  // namespace kobd::host
