// What the gateway allows one client, and all clients together.
#pragma once

#include <cstddef>

namespace kobd::web
{
inline constexpr size_t kHeadMost = 16 * 1024;   // bytes of a request line with its header fields
inline constexpr size_t kBodyMost = 128 * 1024;  // bytes
inline constexpr size_t kConnectionsMost = 1200;
inline constexpr size_t kListenersMost = 100;
inline constexpr size_t kLagMost = 256 * 1024;  // bytes that a listener may be behind before it misses events
inline constexpr int kWorkers = 16;

// Seconds
inline constexpr int kRequestTime = 10;  // from the first byte of a request to its last
inline constexpr int kAnswerTime = 10;   // without taking a byte of its answer, or of its events
inline constexpr int kIdleTime = 60;     // between two requests
inline constexpr int kFarewellTime = 2;  // for the client to read the last answer before the connection is closed
inline constexpr int kPulseTime = 15;    // between two signs of life to listeners
}  // namespace kobd::web
