// The signal handler, and the two threads behind it: one ends the process in order, the other ends it
// after two seconds when the first one hangs.
#include "daemon/signals.h"

#include <pthread.h>
#include <semaphore.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "daemon/base/log.h"
#include "daemon/lifecycle.h"
#include "platform/kobd_exports.h"

namespace kobd
{
namespace
{
constexpr int kEndSignals[] = {SIGUSR1, SIGUSR2, SIGTERM, SIGQUIT, SIGINT, SIGBUS};
constexpr int kNone = INT_MIN;
constexpr timespec kPatience = {2, 0};  // for the orderly end

std::atomic<int> received = kNone;  // the first signal; the later ones change nothing
pid_t process = 0;                  // that has the threads; 0 as long as there are none
sem_t begin_end;                    // wakes the thread that ends the process in order
sem_t begin_patience;               // wakes the thread that ends it in any case

void WaitFor(sem_t* semaphore)
{
    while (sem_wait(semaphore) != 0 && errno == EINTR)
    {
    }
}

void LogSignal(int number)
{
    kobd_log_print("sig_handler", 20, "recv signal:%d", number);
    kobd_log_print("sig_handler", 24, "Get sig %d, exit...", number);
}

// A parent may have blocked any signal. Programs that the platform starts would inherit that, and a SIGBUS
// that is blocked ends the process without its handler.
void UnblockAll()
{
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

void* End(void*)
{
    WaitFor(&begin_end);
    UnblockAll();
    LogSignal(received);
    KobdExit();
    exit_flag = 1;
    exit(0);
}

void* EndInAnyCase(void*)
{
    WaitFor(&begin_patience);
    timespec left = kPatience;
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR)
    {
    }
    _exit(0);
}

bool StartThread(void* (*run)(void*))
{
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, run, nullptr);
    if (error != 0)
        kobd_log_print("KobdSignalSetup", __LINE__, "cannot start a thread for the shutdown: %s", strerror(error));
    else
        pthread_detach(thread);
    return error == 0;
}

void EndAtOnce(int) { _exit(0); }

// Without the threads the calling thread does all of it, whatever it may have interrupted: where it waits for
// itself the alarm ends the process.
[[noreturn]] void EndHere(int number)
{
    UnblockAll();
    signal(SIGALRM, EndAtOnce);
    alarm(kPatience.tv_sec);
    LogSignal(number);
    KobdExit();
    _exit(0);
}

// A process that the platform forked and that runs no other program yet: the signal is for it alone.
[[noreturn]] void EndChild(int number)
{
    signal(number, SIG_DFL);
    kill(getpid(), number);
    UnblockAll();  // its own handler blocks it
    _exit(1);
}

// The kernel blocks a signal while its handler runs. It is not blocked when a library calls the handler.
bool IsDelivered(int number)
{
    sigset_t blocked;
    return pthread_sigmask(SIG_BLOCK, nullptr, &blocked) == 0 && sigismember(&blocked, number) == 1;
}
}  // namespace

void KobdSignalSetup()
{
    sem_init(&begin_end, 0, 0);
    sem_init(&begin_patience, 0, 0);
    if (StartThread(End) && StartThread(EndInAnyCase)) process = getpid();
    struct sigaction action = {};
    action.sa_handler = sig_handler;
    sigemptyset(&action.sa_mask);
    for (const int number : kEndSignals) sigaction(number, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGHUP, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);  // a file at its size limit is an error of the write, not the daemon's end
    signal(SIGCHLD, SIG_DFL);  // where a parent left it ignored, system() cannot tell how its command ended
    UnblockAll();              // last: one that is pending finds its handler
}

bool ShutdownBegun() { return received != kNone; }

void AwaitEnd()
{
    for (;;) pause();
}
}  // namespace kobd

void sig_handler(int number)
{
    using namespace kobd;
    const int error = errno;
    const bool delivered = IsDelivered(number);
    int none = kNone;
    if (process != 0 && process != getpid()) EndChild(number);
    if (received.compare_exchange_strong(none, number))
    {
        if (process == 0) EndHere(number);
        sem_post(&begin_end);
        sem_post(&begin_patience);
    }
    // The instruction that raised a SIGBUS would raise it again; a library that calls this expects no return.
    if (number == SIGBUS || !delivered) AwaitEnd();
    errno = error;  // of the interrupted thread
}
