// Modules and clients that do not read.
#include "host/bus/late_modules.h"

#include <algorithm>
#include <array>

namespace kobd::host
{
namespace
{
constexpr size_t kPlaces = 8;  // the daemon sends to three modules

struct LateModule
{
    uint32_t module = 0;  // 0: a free place
    int64_t since_ms = 0;
    int waited_ms = 0;
    bool unread = false;  // the last message did not get through
};

thread_local std::array<LateModule, kPlaces> late_modules;
thread_local std::array<int, kPlaces> full_queues;  // identifier plus 1, 0: a free place
thread_local size_t next_full = 0;
thread_local bool any_full = false;

LateModule* Find(uint32_t module)
{
    const auto place =
        std::find_if(late_modules.begin(), late_modules.end(), [&](const auto& one) { return one.module == module; });
    return place == late_modules.end() ? nullptr : &*place;
}

bool IsOver(const LateModule& late, int64_t now_ms) { return now_ms - late.since_ms >= kModuleWindowMs; }
}  // namespace

int WaitLeftFor(uint32_t module, int64_t now_ms)
{
    const LateModule* late = Find(module);
    if (late == nullptr) return kModuleWaitMs;
    if (late->unread) return 0;
    return IsOver(*late, now_ms) ? kModuleWaitMs : std::max(kModuleWaitMs - late->waited_ms, 0);
}

void NoteMessageTo(uint32_t module, int64_t now_ms, int waited_ms, bool arrived)
{
    LateModule* late = Find(module);
    if (late == nullptr && waited_ms == 0) return;
    if (late == nullptr) late = Find(0);
    if (late == nullptr) late = &late_modules[module % kPlaces];
    if (late->module != module || IsOver(*late, now_ms)) *late = {module, now_ms, 0, late->unread};
    late->waited_ms += waited_ms;
    late->unread = !arrived;
}

bool NoteReplyDropped(int queue)
{
    if (std::find(full_queues.begin(), full_queues.end(), queue + 1) != full_queues.end()) return false;
    full_queues[next_full++ % kPlaces] = queue + 1;
    any_full = true;
    return true;
}

void NoteReplySent(int queue)
{
    if (!any_full) return;
    std::replace(full_queues.begin(), full_queues.end(), queue + 1, 0);
    any_full = std::any_of(full_queues.begin(), full_queues.end(), [](int one) { return one != 0; });
}
}  // namespace kobd::host
