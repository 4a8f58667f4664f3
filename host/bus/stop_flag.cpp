// The stages of a membership on the bus.
#include "host/bus/stop_flag.h"

#include <ctime>

#include "host/bus/bus_queues.h"

namespace kobd::host
{
namespace
{
class Locked
{
public:
    explicit Locked(pthread_mutex_t* lock) : lock_(lock) { pthread_mutex_lock(lock_); }
    ~Locked() { pthread_mutex_unlock(lock_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    pthread_mutex_t* lock_;
};
}  // namespace

StopFlag::StopFlag()
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&changed_, &attributes);
    pthread_condattr_destroy(&attributes);
}

bool StopFlag::Begin()
{
    const Locked locked(&lock_);
    if (stage_ != Stage::kNone) return false;
    stage_ = Stage::kBeginning;
    set_ = false;
    return true;
}

bool StopFlag::IsBegun()
{
    pthread_mutex_lock(&lock_);
    const bool begun = stage_ != Stage::kNone;
    pthread_mutex_unlock(&lock_);
    return begun;
}

void StopFlag::Begun(bool started)
{
    const Locked locked(&lock_);
    stage_ = started ? Stage::kRunning : Stage::kNone;
    pthread_cond_broadcast(&changed_);
}

bool StopFlag::Set()
{
    const Locked locked(&lock_);
    if (stage_ == Stage::kNone || stage_ == Stage::kEnding) return false;
    set_ = true;
    pthread_cond_broadcast(&changed_);
    while (stage_ == Stage::kBeginning) pthread_cond_wait(&changed_, &lock_);
    if (stage_ != Stage::kRunning) return false;
    stage_ = Stage::kEnding;
    return true;
}

void StopFlag::Clear()
{
    const Locked locked(&lock_);
    stage_ = Stage::kNone;
}

void StopFlag::WaitFor(int milliseconds)
{
    constexpr int kMsPerSecond = 1000;
    constexpr long kNsPerMs = 1000000;
    const int64_t end = NowMs() + milliseconds;
    timespec until{};
    until.tv_sec = static_cast<time_t>(end / kMsPerSecond);
    until.tv_nsec = static_cast<long>(end % kMsPerSecond) * kNsPerMs;
    const Locked locked(&lock_);
    while (!set_ && pthread_cond_timedwait(&changed_, &lock_, &until) == 0) continue;
}
}  // namespace kobd::host
