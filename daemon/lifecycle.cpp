// Start-up and shutdown: what happens in which order, and how a signal ends the process.
#include "daemon/lifecycle.h"

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "daemon/base/log.h"
#include "daemon/handler_table.h"
#include "dictionary/name_index.h"
#include "platform/kob_platform.h"

int exit_flag = 0;

namespace
{
constexpr timespec kWaitStep = {5, 0};
constexpr int kEndSignals[] = {SIGUSR1, SIGUSR2, SIGTERM, SIGQUIT, SIGINT, SIGBUS};

volatile sig_atomic_t received_signal = 0;
pthread_t main_thread;  // the one that takes the signals, from KobdSignalSetup on

sigset_t EndSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : kEndSignals) sigaddset(&set, number);
    return set;
}
}  // namespace

// Runs where a thread of the platform does not block the signal.
void sig_handler(int signal)
{
    received_signal = signal;
    if (!pthread_equal(pthread_self(), main_thread)) pthread_kill(main_thread, signal);  // ends its wait
}

namespace kobd
{
namespace
{
// One mixing step of Bob Jenkins' 1996 hash over three words.
uint32_t Mix(uint32_t a, uint32_t b, uint32_t c)
{
    a = (a - b - c) ^ (c >> 13);
    b = (b - c - a) ^ (a << 8);
    c = (c - a - b) ^ (b >> 13);
    a = (a - b - c) ^ (c >> 12);
    b = (b - c - a) ^ (a << 16);
    c = (c - a - b) ^ (b >> 5);
    a = (a - b - c) ^ (c >> 3);
    b = (b - c - a) ^ (a << 10);
    c = (c - a - b) ^ (b >> 15);
    return c;
}

// A fork that failed ends the process with the parent's status: there is no child that could run on.
void EndParent()
{
    const pid_t child = fork();
    if (child < 0) kobd_log_print("Daemonise", __LINE__, "cannot go into the background: fork: %s", strerror(errno));
    if (child != 0) _exit(0);
}

// The shell's result decides nothing: without the right to change limits the daemon runs on with
// those that are there.
void RunShell(const char* command)
{
    if (system(command) != 0) return;
}

void LogSignal(int signal)
{
    kobd_log_print("sig_handler", 20, "recv signal:%d", signal);
    kobd_log_print("sig_handler", 24, "Get sig %d, exit...", signal);
}
}  // namespace

void SeedRandom()
{
    srand(Mix(static_cast<uint32_t>(clock()), static_cast<uint32_t>(time(nullptr)), static_cast<uint32_t>(getpid())));
}

void Daemonise()
{
    // Before the parent ends: with it the session may end, and its terminal hang up, while the child
    // is still of that session.
    signal(SIGHUP, SIG_IGN);
    EndParent();
    setsid();
    EndParent();
    if (chdir("/") != 0) return;  // cannot fail for a folder that always exists
    umask(0);
}

void RaiseMessageLimits()
{
    RunShell("sysctl -w kernel.msgmax=8192");
    RunShell("sysctl -w kernel.msgmnb=16384");
}

// The main thread blocks the signals and takes them where it waits. Blocked ones are kept while the
// C library's system() ignores SIGINT and SIGQUIT for the whole process, which it does as long as a
// cellular list is being saved.
void KobdSignalSetup()
{
    main_thread = pthread_self();
    const sigset_t taken = EndSignals();
    pthread_sigmask(SIG_BLOCK, &taken, nullptr);
    struct sigaction action = {};
    action.sa_handler = sig_handler;
    sigemptyset(&action.sa_mask);
    for (const int number : kEndSignals) sigaction(number, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGHUP, SIG_IGN);
}

int KobdInit()
{
    checkFirstBootFlag();
    checkUpgradeFlag();
    DictionaryInit(kHandlers.data());
    kobd_lib_init();
    initUssdEventSvr();
    updateArplistTimerInit();
    pemixAlg_init();
    return 0;
}

void KobdExit()
{
    DictionaryExit();
    kobd_lib_exit();
}

void WaitForExit()
{
    const sigset_t taken = EndSignals();
    while (exit_flag == 0 && received_signal == 0)
    {
        const int number = sigtimedwait(&taken, nullptr, &kWaitStep);
        if (number > 0) received_signal = number;
    }
    if (received_signal != 0) LogSignal(received_signal);
    exit_flag = 1;
}
}  // namespace kobd
