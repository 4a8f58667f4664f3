// The clock of all deadlines.
#pragma once

#include <cstdint>
#include <ctime>

namespace kobd
{
// Milliseconds of a clock that does not move when somebody sets the time.
inline int64_t NowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}
}  // namespace kobd
