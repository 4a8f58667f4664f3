// Log lines of the daemon. Which lines are written always and which only in debug mode is decided
// at the call: LOG_ALWAYS, or LOG_DEBUG with the level that the caller asked for once per message.
#pragma once

#include "platform/kobd_exports.h"

namespace kobd
{
inline constexpr const char* kLogFile = "/tmp/kobd.log";
inline constexpr const char* kDebugSwitchFile = "/tmp/kobddebug";
inline constexpr long kLogRotateBytes = 5 * 1024 * 1024;
inline constexpr int kLogLineMax = 4096;  // characters of one line, without the zero byte
}  // namespace kobd

#define LOG_ALWAYS(function, ...) kobd_log_print(function, __LINE__, __VA_ARGS__)
#define LOG_DEBUG(debug, function, ...)                             \
    do                                                              \
    {                                                               \
        if (debug) kobd_log_print(function, __LINE__, __VA_ARGS__); \
    } while (false)
