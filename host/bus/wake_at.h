// An end to waiting on a message queue: msgrcv has no time-out, and a signal would disturb the
// client's own. One thread of the process sends an empty message to the queue whose time has come.
#pragma once

#include <cstdint>

namespace kobd::host
{
// While it lives, a blocking receive on `queue` returns 0 bytes once `deadline_ms` (NowMs) has
// passed. The empty message may also come after the wait is over and meet the next one, which
// must pass over it.
class WakeAt
{
public:
    WakeAt(int queue, int64_t deadline_ms);
    ~WakeAt();
    WakeAt(const WakeAt&) = delete;
    WakeAt& operator=(const WakeAt&) = delete;

    // False when nobody will send: the deadline has passed already, or there is no thread to be
    // had. A blocking receive would then wait for ever.
    bool Armed() const { return armed_; }

private:
    friend struct Wakes;

    int queue_;
    int64_t deadline_ms_;
    bool armed_ = false;
    WakeAt* next_ = nullptr;
    WakeAt* previous_ = nullptr;
};
}  // namespace kobd::host
