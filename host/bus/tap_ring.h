// What a tap's ring looks like in the shared memory that a client makes and the daemon writes.
//
//   | magic | reserved | written | ... 64 bytes | frames, each 8 bytes aligned, in a ring of a power of two |
//
// The daemon raises `reserved` before it writes a frame and `written` after it, both counted in bytes since the start
// and taken modulo 2^32. It never waits and never reads what a client may have written: the client sees from `reserved`
// that a frame was overwritten while it was read, and from the frames' numbers how many it missed.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/bus_client.h"

namespace kobd::host
{
struct TapRing
{
    uint32_t magic;
    std::atomic<uint32_t> reserved;
    std::atomic<uint32_t> written;
};
static_assert(std::atomic<uint32_t>::is_always_lock_free, "two processes share the counters");

inline constexpr uint32_t kTapMagic = 0x5A515401;
inline constexpr size_t kTapRingStart = 64;        // bytes before the frames
inline constexpr size_t kTapBytesMin = 64 * 1024;  // of the frames: several of the longest
inline constexpr size_t kTapBytesMax = 64 * 1024 * 1024;
inline constexpr size_t kTapAlign = 8;

// Before the bytes of the message in the ring.
struct TapFrameHeader
{
    uint32_t bytes;   // of the frame with this header and its padding
    uint32_t number;  // of the frame, from 0 on
    BusTapped tapped;
};
static_assert(sizeof(TapFrameHeader) % kTapAlign == 0);

constexpr size_t TapFrameBytes(size_t message)
{
    return (sizeof(TapFrameHeader) + message + kTapAlign - 1) & ~(kTapAlign - 1);
}
}  // namespace kobd::host
