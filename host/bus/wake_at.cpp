// The thread that ends waits. It sleeps until the earliest deadline it knows of; setting a later
// one, which is what a client with one time-out does at every call, costs no system call.
#include "host/bus/wake_at.h"

#include <pthread.h>
#include <sys/msg.h>

#include <algorithm>
#include <csignal>
#include <ctime>

#include "host/bus/bus_queues.h"

namespace kobd::host
{
namespace
{
constexpr int64_t kNever = INT64_MAX;
constexpr int64_t kAgainMs = 100;
constexpr int64_t kMsPerSecond = 1000;
constexpr long kNsPerMs = 1000000;
constexpr size_t kStackBytes = size_t{256} * 1024;  // room for the sanitizers and the C library's own
}  // namespace

// All waits of the process, and the thread that ends them. Everything below is under the lock.
struct Wakes
{
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t sooner = PTHREAD_COND_INITIALIZER;  // signalled when a deadline lies before next_look
    WakeAt* first = nullptr;
    int64_t next_look = kNever;
    bool running = false;

    bool Arm(WakeAt* wake);
    void Disarm(WakeAt* wake);
    void ClearInChild();
    bool StartThread();
    int64_t SendDue();
    [[noreturn]] void Run();
};

namespace
{
Wakes wakes;  // never destroyed: the thread may run until the process has ended

// The condition counts in the clock of the deadlines, which nobody sets.
void MakeCondition()
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&wakes.sooner, &attributes);
    pthread_condattr_destroy(&attributes);
}

// A child has neither the thread nor the waits of the other threads.
void ClearInChild() { wakes.ClearInChild(); }

void PrepareOnce()
{
    MakeCondition();
    pthread_atfork(nullptr, nullptr, ClearInChild);
}

void* RunWakes(void*) { wakes.Run(); }
}  // namespace

void Wakes::ClearInChild()
{
    pthread_mutex_init(&lock, nullptr);
    MakeCondition();
    first = nullptr;
    next_look = kNever;
    running = false;
}

// The thread takes no signals: those belong to the program.
bool Wakes::StartThread()
{
    static pthread_once_t prepared = PTHREAD_ONCE_INIT;
    pthread_once(&prepared, PrepareOnce);
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_attr_setstacksize(&attributes, kStackBytes);
    pthread_t thread;
    running = pthread_create(&thread, &attributes, RunWakes, nullptr) == 0;
    pthread_attr_destroy(&attributes);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return running;
}

bool Wakes::Arm(WakeAt* wake)
{
    pthread_mutex_lock(&lock);
    const bool armed = running || StartThread();
    if (armed)
    {
        wake->next_ = first;
        if (first != nullptr) first->previous_ = wake;
        first = wake;
        if (wake->deadline_ms_ < next_look) pthread_cond_signal(&sooner);
    }
    pthread_mutex_unlock(&lock);
    return armed;
}

void Wakes::Disarm(WakeAt* wake)
{
    pthread_mutex_lock(&lock);
    (wake->previous_ != nullptr ? wake->previous_->next_ : first) = wake->next_;
    if (wake->next_ != nullptr) wake->next_->previous_ = wake->previous_;
    pthread_mutex_unlock(&lock);
}

// Ends the waits whose time has come; when there is more to do. A wait that goes on nevertheless
// lost its wake, or the kernel had no memory for it, and gets another.
int64_t Wakes::SendDue()
{
    constexpr struct
    {
        long type;
        char none;
    } kEmpty = {1, 0};
    const int64_t now = NowMs();
    int64_t next = kNever;
    for (WakeAt* wake = first; wake != nullptr; wake = wake->next_)
    {
        if (wake->deadline_ms_ <= now)
        {
            msgsnd(wake->queue_, &kEmpty, 0, IPC_NOWAIT);
            wake->deadline_ms_ = now + kAgainMs;
        }
        next = std::min(next, wake->deadline_ms_);
    }
    return next;
}

void Wakes::Run()
{
    pthread_mutex_lock(&lock);
    for (;;)
    {
        next_look = SendDue();
        if (next_look == kNever)
        {
            pthread_cond_wait(&sooner, &lock);
            continue;
        }
        timespec until{};
        until.tv_sec = static_cast<time_t>(next_look / kMsPerSecond);
        until.tv_nsec = static_cast<long>(next_look % kMsPerSecond) * kNsPerMs;
        pthread_cond_timedwait(&sooner, &lock, &until);
    }
}

WakeAt::WakeAt(int queue, int64_t deadline_ms) : queue_(queue), deadline_ms_(deadline_ms)
{
    if (NowMs() < deadline_ms) armed_ = wakes.Arm(this);
}

WakeAt::~WakeAt()
{
    if (armed_) wakes.Disarm(this);
}
}  // namespace kobd::host
