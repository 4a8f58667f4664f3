#include "host/bus/taps.h"

#include <fcntl.h>
#include <sys/shm.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"
#include "host/bus/tap_ring.h"

namespace kobd::host
{
namespace
{
constexpr size_t kTapsMax = 64;
constexpr int64_t kLookMs = 1000;  // between looks for taps that were closed

struct Tap
{
    TapRing* ring = nullptr;  // nullptr: a free place
    int memory = -1;
    uint32_t size = 0;  // bytes of the frames, a power of two
    uint32_t head = 0;  // bytes written since the start
    uint32_t number = 0;
};

std::mutex mutex;  // of the taps
std::array<Tap, kTapsMax> taps;
std::atomic<int> open_taps = 0;
int64_t looked_ms = 0;

// The message that this thread handles.
thread_local uint32_t in_hand_sender = 0;
thread_local char in_hand_program[sizeof BusTapped::program] = "";
thread_local uint64_t in_hand_since_ns = 0;

uint64_t Nanoseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1'000'000'000 + static_cast<uint64_t>(now.tv_nsec);
}

char* Frames(const Tap& tap) { return reinterpret_cast<char*>(tap.ring) + kTapRingStart; }

// Copies bytes into the ring, around its end.
void Put(const Tap& tap, uint32_t place, const void* bytes, size_t count)
{
    const size_t at = place & (tap.size - 1);
    const size_t first = count < tap.size - at ? count : tap.size - at;
    memcpy(Frames(tap) + at, bytes, first);
    memcpy(Frames(tap), static_cast<const char*>(bytes) + first, count - first);
}

void Write(Tap* tap, TapFrameHeader frame, const MessageHeader* message, size_t bytes)
{
    frame.number = tap->number++;
    tap->ring->reserved.store(tap->head + frame.bytes, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    Put(*tap, tap->head, &frame, sizeof frame);
    Put(*tap, tap->head + sizeof frame, message, bytes);
    tap->head += frame.bytes;
    tap->ring->written.store(tap->head, std::memory_order_release);
}

void Close(Tap* tap)
{
    shmdt(tap->ring);
    *tap = {};
    --open_taps;
}

// Gives up the memory that nobody else has any more.
void DropClosed()
{
    const int64_t now = NowMs();
    if (now - looked_ms < kLookMs) return;
    looked_ms = now;
    for (Tap& tap : taps)
        if (shmid_ds state{};
            tap.ring != nullptr && (shmctl(tap.memory, IPC_STAT, &state) != 0 || state.shm_nattch <= 1))
            Close(&tap);
}

void Copy(BusTapKind kind, const MessageHeader* message)
{
    if (message->message_class == kClassHostControl) return;
    const uint64_t now_ns = Nanoseconds(CLOCK_MONOTONIC);
    if (kind == kTapReceived) in_hand_since_ns = now_ns;
    const size_t bytes = sizeof *message + message->length;
    TapFrameHeader frame = {.bytes = static_cast<uint32_t>(TapFrameBytes(bytes)), .number = 0, .tapped = {}};
    frame.tapped.time_us = static_cast<int64_t>(Nanoseconds(CLOCK_REALTIME) / 1000);
    frame.tapped.took_ns = kind == kTapAnswered ? now_ns - in_hand_since_ns : 0;
    frame.tapped.process = in_hand_sender;
    frame.tapped.kind = kind;
    memcpy(frame.tapped.program, in_hand_program, sizeof in_hand_program);
    const std::lock_guard lock(mutex);
    for (Tap& tap : taps)
        if (tap.ring != nullptr) Write(&tap, frame, message, bytes);
    DropClosed();
}

// The bytes for frames in memory of this size; 0 when it does not fit.
size_t FrameBytes(size_t memory)
{
    const size_t bytes = memory - kTapRingStart;
    const bool fits =
        memory > kTapRingStart && std::has_single_bit(bytes) && bytes >= kTapBytesMin && bytes <= kTapBytesMax;
    return fits ? bytes : 0;
}

int Open(int memory)
{
    shmid_ds state{};
    if (shmctl(memory, IPC_STAT, &state) != 0 || !IsTrusted(state.shm_perm)) return kInvalidArgument;
    const size_t bytes = FrameBytes(state.shm_segsz);
    const std::lock_guard lock(mutex);
    looked_ms = 0;
    DropClosed();
    Tap* place = nullptr;
    for (Tap& tap : taps)
        if (tap.ring == nullptr) place = &tap;
    if (bytes == 0) return kInvalidArgument;
    if (place == nullptr) return kTableFull;
    void* ring = shmat(memory, nullptr, 0);
    if (ring == reinterpret_cast<void*>(-1)) return kInvalidArgument;
    *place = {.ring = static_cast<TapRing*>(ring), .memory = memory, .size = static_cast<uint32_t>(bytes)};
    place->ring->reserved = place->ring->written = 0;
    place->ring->magic = kTapMagic;
    ++open_taps;
    return kSuccess;
}

// The number in the request's first item, -1 when it has none.
int32_t NumberIn(const MessageHeader* request)
{
    int32_t number = -1;
    if (request->length >= kIntItem)
        memcpy(&number, reinterpret_cast<const char*>(request + 1) + kItemHeader, sizeof number);
    return number;
}
}  // namespace

void AnswerTap(const MessageHeader* request)
{
    const int result = Open(NumberIn(request));
    alignas(MessageHeader) char bytes[sizeof(MessageHeader) + kIntItem];
    memcpy(bytes, request, sizeof(MessageHeader));
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    reply->length = static_cast<uint16_t>(TlvPushIntToBuf(reply + 1, kTagResult, result));
    MessageSendReply(reply);
}

void TapReceived(const MessageHeader* message, uint32_t sender, int32_t connection)
{
    if (open_taps == 0) return;
    in_hand_sender = sender;
    snprintf(in_hand_program, sizeof in_hand_program, "%s", SenderProgram(sender, connection));
    Copy(kTapReceived, message);
}

void TapHandled()
{
    in_hand_sender = 0;
    *in_hand_program = 0;
}

void TapAnswered(const MessageHeader* message)
{
    if (open_taps != 0) Copy(kTapAnswered, message);
}

void TapSent(const MessageHeader* message)
{
    if (open_taps != 0) Copy(kTapSent, message);
}

const char* SenderProgram(uint32_t sender, int32_t connection)
{
    // Asked again and again for the same connection, whose process stays the same program.
    static thread_local uint32_t known_sender = 0;
    static thread_local int32_t known_connection = 0;
    static thread_local char name[sizeof BusTapped::program] = "";
    if (sender == 0) return "";
    if (sender == known_sender && connection == known_connection && connection != 0) return name;
    known_sender = sender;
    known_connection = connection;
    char path[32];
    snprintf(path, sizeof path, "/proc/%u/comm", sender);
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const ssize_t count = file >= 0 ? read(file, name, sizeof name - 1) : 0;
    if (file >= 0) close(file);
    name[count > 0 ? count : 0] = 0;
    name[strcspn(name, "\n")] = 0;
    return name;
}
}  // namespace kobd::host
