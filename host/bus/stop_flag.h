// Beginning and ending one membership on the bus from any thread, and waits that end with it.
#pragma once

#include <pthread.h>

#include <atomic>

namespace kobd::host
{
class StopFlag
{
public:
    StopFlag();

    // Begin: false when there is a membership already. Begun: whether its thread was started; without one the
    // membership is over.
    bool Begin();
    void Begun(bool started);

    // Asks for the end, waiting for Begun. False when there is no membership, or another thread ends it. Clear: it
    // is over.
    bool Set();
    void Clear();

    bool IsBegun();

    bool IsSet() const { return set_; }

    // Waits that long, in a clock that nobody sets, or until Set.
    void WaitFor(int milliseconds);

private:
    enum class Stage
    {
        kNone,
        kBeginning,
        kRunning,
        kEnding,
    };

    pthread_mutex_t lock_ = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t changed_;
    Stage stage_ = Stage::kNone;
    std::atomic<bool> set_ = false;
};
}  // namespace kobd::host
