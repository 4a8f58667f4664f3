// kobctl set --confirm in front of a stopped terminal, a restarted daemon and a held lock. What a killed kobctl leaves
// is in sessions/confirm_lost.session.
#include <fcntl.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <termios.h>

#include <ctime>

#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
bool PortBecomes(const std::string& value)
{
    return Await([&] { return GetObject("webHttpPort") == value; });
}

using KobctlConfirm = DaemonTest;

TEST_F(KobctlConfirm, OldValuesReturnAlsoToTheNextDaemonAndStay)
{
    EXPECT_EQ(RunLine("set --confirm 4 webHttpPort=82 webHttpEnable=0").status, 0);
    Restart();
    EXPECT_EQ(GetObject("webHttpPort"), "82");
    EXPECT_TRUE(PortBecomes("80"));
    EXPECT_TRUE(Await([] { return StateSql("/tmp/state", "SELECT count(*) FROM pending") == "0\n"; }));
    Restart();
    EXPECT_EQ(Said("get webHttpPort webHttpEnable"), "webHttpPort=80\nwebHttpEnable=1\n") << "durable";
    EXPECT_EQ(RunLine("confirm").status, 1) << "there is nothing left";
}

// Ctrl-S on the terminal: nothing that is printed is ever written.
TEST_F(KobctlConfirm, AStoppedTerminalKeepsNobodyOut)
{
    int screen = -1;
    int terminal = -1;
    ASSERT_EQ(openpty(&screen, &terminal, nullptr, nullptr, nullptr), 0) << "no terminal here";
    ASSERT_EQ(tcflow(terminal, TCOOFF), 0);
    const pid_t stopped = StartKobctl("set --confirm 1 webHttpPort=81", terminal);
    EXPECT_TRUE(PortBecomes("81"));
    EXPECT_TRUE(PortBecomes("80"));
    EXPECT_EQ(Said("get webHttpPort"), "80\n");
    EXPECT_EQ(waitpid(stopped, nullptr, WNOHANG), 0) << "it did wait for the terminal";
    EXPECT_EQ(tcflow(terminal, TCOON), 0);
    EXPECT_EQ(waitpid(stopped, nullptr, 0), stopped);
    close(terminal);
    close(screen);

    const int lock = open("/tmp/state/confirm.lock", O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(Said("set --confirm 60 webHttpPort=81"),
              "! kobctl: set --confirm: another kobctl has been at work on the pending set in /tmp/state for two "
              "seconds, try again; nothing was set\n[1]\n");
    close(lock);
}

// As the service script of the router calls it: with the lock of that service open.
TEST_F(KobctlConfirm, TheOneThatWaitsHoldsNoLockOfItsCaller)
{
    constexpr int kLock = 1000;
    const int file = open("/tmp/lock", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(dup2(file, kLock), kLock);
    ASSERT_EQ(flock(kLock, LOCK_EX), 0);
    timespec begin = {};
    clock_gettime(CLOCK_BOOTTIME, &begin);
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81").status, 0);
    EXPECT_GT(std::stoll(StateSql("/tmp/state", "SELECT value FROM meta WHERE name = 'due'")), begin.tv_sec + 60)
        << "not a part of a second too little";
    close(kLock);
    close(file);
    const int other = open("/tmp/lock", O_RDWR | O_CLOEXEC);
    EXPECT_TRUE(Await([&] { return flock(other, LOCK_EX | LOCK_NB) == 0; }));
    close(other);
    EXPECT_EQ(Said("confirm"), "kept: webHttpPort\n") << "and ends the one that waits";
}
}  // namespace
}  // namespace kobd::test
