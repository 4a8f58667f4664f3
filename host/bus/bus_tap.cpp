// The client's side of a tap: makes the shared memory and reads what the daemon writes there.
#include <sys/msg.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"
#include "host/bus/tap_ring.h"

using namespace kobd;
using namespace kobd::host;

struct BusTap
{
    const TapRing* ring = nullptr;
    int memory = -1;
    uint32_t read = 0;    // bytes taken since the start
    uint32_t number = 0;  // of the next frame
};

namespace
{
constexpr uint32_t kBytes = 1024 * 1024;  // of the frames: thousands of usual requests
constexpr long kLookNs = 2'000'000;       // between looks at a ring without news

// The memory, attached. It goes with the last process that has it: nothing is left behind by one that is killed.
// nullptr when the system gives none.
TapRing* MakeRing(int* memory)
{
    *memory = shmget(IPC_PRIVATE, kTapRingStart + kBytes, IPC_CREAT | kQueueMode);
    if (*memory < 0) return nullptr;
    void* place = shmat(*memory, nullptr, 0);
    const int queue = ModuleQueue(kModuleKobd, false);
    shmid_ds state{};
    msqid_ds daemon{};
    // Root's memory for a user's daemon, as with queues.
    if (queue >= 0 && msgctl(queue, IPC_STAT, &daemon) == 0 && shmctl(*memory, IPC_STAT, &state) == 0 &&
        state.shm_perm.uid != daemon.msg_perm.uid)
    {
        state.shm_perm.uid = daemon.msg_perm.uid;
        shmctl(*memory, IPC_SET, &state);
    }
    shmctl(*memory, IPC_RMID, nullptr);
    return place != reinterpret_cast<void*>(-1) ? static_cast<TapRing*>(place) : nullptr;
}

int Ask(BusClient* client, int memory, int timeout_ms)
{
    alignas(MessageHeader) char request[sizeof(MessageHeader) + kIntItem] = {};
    alignas(MessageHeader) static thread_local char reply[kMessageMax];
    auto* header = reinterpret_cast<MessageHeader*>(request);
    header->destination = kModuleKobd;
    header->message_class = kClassHostControl;
    header->id = kHostTap;
    header->length = static_cast<uint16_t>(TlvPushIntToBuf(header + 1, kTagValue, memory));
    if (const int code = BusClientCall(client, header, reinterpret_cast<MessageHeader*>(reply), timeout_ms))
        return code;
    int32_t result = kSystemError;
    if (reinterpret_cast<MessageHeader*>(reply)->length >= kIntItem)
        memcpy(&result, reply + sizeof(MessageHeader) + kItemHeader, sizeof result);
    return result;
}

void Take(const BusTap& tap, uint32_t place, void* bytes, size_t count)
{
    const char* frames = reinterpret_cast<const char*>(tap.ring) + kTapRingStart;
    const size_t at = place & (kBytes - 1);
    const size_t first = std::min(count, size_t{kBytes} - at);
    memcpy(bytes, frames + at, first);
    memcpy(static_cast<char*>(bytes) + first, frames, count - first);
}

// Whether what was taken from `read` on was overwritten meanwhile.
bool IsOverwritten(const BusTap& tap)
{
    std::atomic_thread_fence(std::memory_order_acquire);
    return tap.ring->reserved.load(std::memory_order_relaxed) - tap.read > kBytes;
}

// Takes a frame when there is one. What fell behind goes on with what comes next.
bool TakeFrame(BusTap* tap, TapFrameHeader* frame, MessageHeader* message)
{
    const uint32_t written = tap->ring->written.load(std::memory_order_acquire);
    if (written == tap->read) return false;
    Take(*tap, tap->read, frame, sizeof *frame);
    const size_t bytes = frame->bytes - sizeof *frame;
    const bool sound = frame->bytes >= TapFrameBytes(sizeof *message) && frame->bytes <= TapFrameBytes(kMessageMax);
    if (sound && !IsOverwritten(*tap)) Take(*tap, tap->read + sizeof *frame, message, std::min(bytes, kMessageMax));
    if (!sound || IsOverwritten(*tap))
    {
        tap->read = written;
        return false;
    }
    tap->read += frame->bytes;
    return true;
}

// Nobody writes any more, and everything was taken.
bool IsLeft(const BusTap& tap)
{
    shmid_ds state{};
    const bool alone = shmctl(tap.memory, IPC_STAT, &state) != 0 || state.shm_nattch <= 1;
    return alone && tap.ring->written.load(std::memory_order_acquire) == tap.read;
}
}  // namespace

int BusTapOpen(BusClient* client, BusTap** tap, int timeout_ms)
{
    *tap = nullptr;
    int memory = -1;
    TapRing* ring = MakeRing(&memory);
    if (ring == nullptr) return kInitializeFailed;
    int code = Ask(client, memory, timeout_ms);
    if (code == kSuccess && ring->magic != kTapMagic) code = kSystemError;
    if (code == kSuccess) *tap = new (std::nothrow) BusTap{.ring = ring, .memory = memory};
    if (code == kSuccess && *tap == nullptr) code = kMallocFailed;
    if (code != kSuccess) shmdt(ring);
    return code;
}

void BusTapClose(BusTap* tap)
{
    if (tap == nullptr) return;
    shmdt(tap->ring);
    delete tap;
}

int BusTapNext(BusTap* tap, BusTapped* tapped, MessageHeader* message, uint32_t* missed, int timeout_ms)
{
    const int64_t deadline = NowMs() + timeout_ms;
    TapFrameHeader frame{};
    while (!TakeFrame(tap, &frame, message))
    {
        if (IsLeft(*tap)) return kNotRunning;
        if (NowMs() >= deadline) return kReplyTimeout;
        const timespec pause = {0, kLookNs};
        nanosleep(&pause, nullptr);
    }
    *missed = frame.number - tap->number;
    tap->number = frame.number + 1;
    *tapped = frame.tapped;
    return kSuccess;
}
