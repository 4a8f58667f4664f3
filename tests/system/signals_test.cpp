// Ends of the real daemon while a library of the platform goes wrong: always with status 0, and within the time.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
constexpr char kLog[] = "/tmp/kobd.log";

struct EndCase
{
    const char* hook;
    int sent;  // 0: none
    int told;  // in the log; 0: it may be missing
    const char* why;
};

const EndCase kEndCases[] = {
    {"main", 0, SIGBUS, "a SIGBUS of the main thread"},
    {"thread", 0, SIGBUS, "a SIGBUS of another thread, which the main thread waits for"},
    {"child", SIGTERM, SIGTERM, "a child's SIGBUS ends the child alone, and does not hang it"},
    {"hang", SIGQUIT, SIGQUIT, "a hook that hangs"},
    {"no threads", SIGTERM, 0, "no thread to be had, and the signal meets a lock that the log needs"},
};

bool LogSays(const std::string& text)
{
    for (int look = 0; look < 50; ++look, usleep(100000))
        if (FileText(kLog).find(text) != std::string::npos) return true;
    return false;
}

pid_t Spawn(DaemonProcess& daemon, const char* hook)
{
    setenv("KOBD_HOOK", hook, 1);
    setenv("LD_PRELOAD", (kPrograms + "tests/libkobd_hostile.so").c_str(), 1);
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    const pid_t process = daemon.Spawn();
    for (const char* name : {"KOBD_HOOK", "LD_PRELOAD", "ASAN_OPTIONS"}) unsetenv(name);
    return process;
}

int EndOf(pid_t process)
{
    int status = -1;
    for (int look = 0; look < 40 && waitpid(process, &status, WNOHANG) == 0; ++look) usleep(100000);
    if (kill(process, SIGKILL) == 0 && status == -1) waitpid(process, nullptr, 0);
    return status;
}

TEST(Signals, EndTheDaemonWithStatusZeroWhateverAHookDoes)
{
    SKIP_WITHOUT_NAMESPACES();
    for (const EndCase& end : kEndCases)
    {
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd* /tmp/visit"), 0);
        DaemonProcess daemon("/tmp/state");
        const pid_t process = Spawn(daemon, end.hook);
        for (int look = 0; look < 50 && Request(kUpdate, {}, 200).bus != 0 && end.sent != 0; ++look) usleep(100000);
        usleep(200000);  // into the hook
        if (end.sent != 0) kill(process, end.sent);
        EXPECT_EQ(EndOf(process), 0) << end.why;
        EXPECT_TRUE(end.told == 0 || LogSays("Get sig " + std::to_string(end.told))) << end.why;
        EXPECT_TRUE(*end.hook != 'c' || WTERMSIG(atoi(FileText("/tmp/visit").c_str())) == SIGBUS) << end.why;
    }
}
}  // namespace
}  // namespace kobd::test
