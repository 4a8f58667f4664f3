// Start-up and shutdown: what happens in which order, and how a signal ends the process.
#include "daemon/lifecycle.h"

#include <semaphore.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>

#include "daemon/handler_table.h"
#include "daemon/log.h"
#include "dictionary/name_index.h"
#include "platform/kob_platform.h"

int exit_flag = 0;

namespace
{
constexpr int kWaitStepSeconds = 5;

volatile sig_atomic_t received_signal = 0;
sem_t wake_main;  // posted by the signal handler; sem_post is safe there
}  // namespace

void sig_handler(int signal)
{
    received_signal = signal;
    sem_post(&wake_main);
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

void EndParent()
{
    if (fork() != 0) _exit(0);  // the parent, or a fork that failed
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
    EndParent();
    setsid();
    signal(SIGHUP, SIG_IGN);
    EndParent();
    if (chdir("/") != 0) return;  // cannot fail for a folder that always exists
    umask(0);
}

void RaiseMessageLimits()
{
    RunShell("sysctl -w kernel.msgmax=8192");
    RunShell("sysctl -w kernel.msgmnb=16384");
}

void KobdSignalSetup()
{
    sem_init(&wake_main, 0, 0);
    struct sigaction action = {};
    action.sa_handler = sig_handler;
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGUSR1, SIGUSR2, SIGTERM, SIGQUIT, SIGINT, SIGBUS}) sigaction(number, &action, nullptr);
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
    while (exit_flag == 0 && received_signal == 0)
    {
        timespec until{};
        clock_gettime(CLOCK_REALTIME, &until);
        until.tv_sec += kWaitStepSeconds;
        sem_timedwait(&wake_main, &until);
    }
    if (received_signal != 0) LogSignal(received_signal);
    exit_flag = 1;
}
}  // namespace kobd
