// Start-up and shutdown: what happens in which order.
#include "daemon/lifecycle.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "daemon/base/log.h"
#include "daemon/handler_table.h"
#include "daemon/signals.h"
#include "dictionary/name_index.h"
#include "platform/kob_platform.h"

volatile int exit_flag = 0;

namespace kobd
{
namespace
{
constexpr unsigned kWaitSeconds = 5;

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

// Held while the bus is joined or left, so that a signal during the start-up meets neither half of it.
pthread_mutex_t joining = PTHREAD_MUTEX_INITIALIZER;

constexpr timespec kLook = {0, 10000000};  // 10 ms between looks at the lock
constexpr int kLooks = 100;                // one second in all: a hook may hang with it

bool LockJoining()
{
    for (int look = 0; look < kLooks; ++look)
    {
        if (pthread_mutex_trylock(&joining) == 0) return true;
        nanosleep(&kLook, nullptr);
    }
    return false;
}

void JoinBus()
{
    pthread_mutex_lock(&joining);
    if (!ShutdownBegun()) DictionaryInit(kHandlers.data());
    pthread_mutex_unlock(&joining);
}
}  // namespace

void OpenStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        // open takes the lowest number that is free: all below it are open by now
        if (fcntl(descriptor, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) return;
}

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

int DictionaryInit(const MsgHandler* handlers)
{
    NameIndexBuild();
    MessageProccessRegister(handlers);
    if (const int code = MessageInitialize(kModuleKobd))
        LOG_ALWAYS("DictionaryInit", "cannot join the bus as module 0x%08X (%d): is another daemon running?",
                   kModuleKobd, code);
    return 0;
}

int DictionaryExit()
{
    MessageDestroy();
    NameIndexClear();
    return 0;
}

int KobdInit()
{
    for (void (*const step)() : {checkFirstBootFlag, checkUpgradeFlag, JoinBus, kobd_lib_init, initUssdEventSvr,
                                 updateArplistTimerInit, pemixAlg_init})
    {
        if (ShutdownBegun()) AwaitEnd();
        step();
    }
    return 0;
}

void KobdExit()
{
    // A signal may come while exit_flag already ends the process, on another thread.
    static std::atomic_flag begun;
    if (begun.test_and_set()) AwaitEnd();
    if (LockJoining()) DictionaryExit();
    kobd_lib_exit();
}

void WaitForExit()
{
    while (exit_flag == 0) sleep(kWaitSeconds);
    if (ShutdownBegun()) AwaitEnd();
}
}  // namespace kobd
