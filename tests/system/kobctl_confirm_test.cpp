// kobctl set --confirm: the old values come back, whatever dies in between.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class KobctlConfirm : public DaemonTest
{
protected:
    void SetUp() override
    {
        // The waiting kobctl becomes a child of ours; the processor's emulator cannot do that.
        if (prctl(PR_SET_CHILD_SUBREAPER, 1) != 0) GTEST_SKIP() << "no subreapers here";
        DaemonTest::SetUp();
    }

    // No waiting kobctl outlives its test.
    void TearDown() override
    {
        KillWaiting();
        prctl(PR_SET_CHILD_SUBREAPER, 0);
    }

    // Ends the kobctl that waits, as a crash would. How many there were.
    int KillWaiting() const
    {
        int killed = 0;
        for (const auto& entry : std::filesystem::directory_iterator("/proc"))
        {
            const pid_t process = static_cast<pid_t>(atol(entry.path().filename().c_str()));
            std::ifstream stat(entry.path() / "stat");
            std::string text;
            std::getline(stat, text);
            const size_t name_end = text.rfind(')');
            if (process <= 0 || process == daemon_.Process() || name_end == std::string::npos) continue;
            char state = 0;
            pid_t parent = 0;
            std::istringstream(text.substr(name_end + 1)) >> state >> parent;
            if (parent != getpid()) continue;
            kill(process, SIGKILL);
            killed += waitpid(process, nullptr, 0) == process && state != 'Z';
        }
        return killed;
    }

    static std::string Port() { return Get("webHttpPort"); }

    static bool PortBecomes(const std::string& value, int seconds = 10)
    {
        for (int i = 0; i < seconds * 10 && Port() != value; ++i) usleep(100000);
        return Port() == value;
    }

    static std::string Sql(const std::string& sql) { return StateSql("/tmp/state", sql); }
    static bool IsPending() { return Sql("SELECT count(*) FROM pending") != "0\n"; }

    // Lets the time of the pending set be up.
    static void Expire() { Sql("UPDATE meta SET value = '0' WHERE name = 'due'"); }
};

TEST_F(KobctlConfirm, OldValuesReturnUnlessConfirmed)
{
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81 webHttpEnable=0").output,
              "the old values return in 60 seconds unless kobctl confirm follows\n");
    EXPECT_EQ(
        RunLine("set --confirm 60 webHttpPort=82").errors,
        "kobctl: set --confirm: another set waits for kobctl confirm (webHttpPort, webHttpEnable); nothing was set\n");
    EXPECT_EQ(RunLine("confirm").output, "kept: webHttpPort, webHttpEnable\n");
    EXPECT_EQ(Port(), "81");
    EXPECT_FALSE(IsPending());
    EXPECT_EQ(RunLine("confirm").errors, "kobctl: there is nothing to confirm\n");

    EXPECT_EQ(RunLine("set --confirm 1 webHttpPort=82 webHttpEnable=1").status, 0);
    EXPECT_EQ(Port(), "82");
    EXPECT_TRUE(PortBecomes("81")) << Port();
    Restart();
    EXPECT_EQ(RunLine("get webHttpPort webHttpEnable").output, "webHttpPort=81\nwebHttpEnable=0\n") << "durable";
    EXPECT_FALSE(IsPending());
}

TEST_F(KobctlConfirm, TheNextCallGoesOnForAKilledOne)
{
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81").status, 0);
    EXPECT_EQ(KillWaiting(), 1);
    Expire();
    EXPECT_EQ(Port(), "81") << "nobody waits";
    const Ran ran = RunLine("get webHttpPort");
    EXPECT_EQ(ran.output, "80\n");
    EXPECT_EQ(ran.errors, "kobctl: not confirmed in time, the old values are back: webHttpPort\n");
    EXPECT_FALSE(IsPending());

    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=82").status, 0);
    EXPECT_EQ(KillWaiting(), 1);
    Expire();
    const Ran late = RunLine("confirm");
    EXPECT_EQ(late.status, 1);
    EXPECT_EQ(late.errors, "kobctl: too late to confirm webHttpPort: the old values are back\n");
    EXPECT_EQ(Port(), "80");
}

// Ctrl-S on the terminal: nothing that is printed is ever written.
TEST_F(KobctlConfirm, AStoppedTerminalKeepsNobodyOut)
{
    const int screen = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(screen >= 0 && grantpt(screen) == 0 && unlockpt(screen) == 0) << "no terminal here";
    const int terminal = open(ptsname(screen), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(tcflow(terminal, TCOOFF), 0);
    const pid_t stopped = StartKobctlOn(terminal, {"set", "--confirm", "2", "webHttpPort=81"});
    EXPECT_TRUE(PortBecomes("81"));
    EXPECT_TRUE(PortBecomes("80"));
    EXPECT_EQ(RunLine("get webHttpPort").output, "80\n");
    EXPECT_EQ(waitpid(stopped, nullptr, WNOHANG), 0) << "it did wait for the terminal";
    EXPECT_EQ(tcflow(terminal, TCOON), 0);
    EXPECT_EQ(waitpid(stopped, nullptr, 0), stopped);
    close(terminal);
    close(screen);

    const int lock = open("/tmp/state/confirm.lock", O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    EXPECT_EQ(
        RunLine("set --confirm 60 webHttpPort=81").errors,
        "kobctl: set --confirm: another kobctl has been at work on the pending set in /tmp/state for two seconds, try "
        "again; nothing was set\n");
    close(lock);
}

// As the service script of the router calls it: with the lock of that service open.
TEST_F(KobctlConfirm, TheOneThatWaitsHoldsNoLockOfItsCaller)
{
    constexpr int kLock = 1000;
    const int file = open("/tmp/kob-lock", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(dup2(file, kLock), kLock);
    close(file);
    ASSERT_EQ(flock(kLock, LOCK_EX), 0);
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81").status, 0);
    close(kLock);
    const int other = open("/tmp/kob-lock", O_RDWR | O_CLOEXEC);
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    close(other);
    EXPECT_EQ(KillWaiting(), 1) << "and it does wait";
}

TEST_F(KobctlConfirm, AfterARestartOfTheMachineTheServiceStartTakesBack)
{
    EXPECT_EQ(RunLine("set --confirm 600 webHttpPort=81").status, 0);
    EXPECT_EQ(KillWaiting(), 1);
    Sql("UPDATE meta SET value = 'another' WHERE name = 'boot'");
    daemon_.End(SIGKILL);
    EXPECT_EQ(RunLine("confirm --resume").status, 0) << "before the daemon answers";
    sleep(2);
    EXPECT_TRUE(IsPending()) << "kept until somebody answers";
    ASSERT_TRUE(daemon_.Start());
    EXPECT_TRUE(PortBecomes("80"));
    EXPECT_EQ(RunLine("confirm --resume").status, 0) << "nothing to do is no failure";
}

TEST_F(KobctlConfirm, ARestartOfTheDaemonAloneChangesNothing)
{
    EXPECT_EQ(RunLine("set --confirm 4 webHttpPort=81").status, 0);
    Restart();
    EXPECT_EQ(Port(), "81");
    EXPECT_TRUE(PortBecomes("80"));
}

TEST_F(KobctlConfirm, OldValuesThatAreRefusedAreKept)
{
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81").status, 0);
    EXPECT_EQ(KillWaiting(), 1);
    Sql("UPDATE pending SET old = '0'");
    Expire();
    const Ran ran = RunLine("get webHttpPort");
    EXPECT_EQ(ran.errors,
              "kobctl: the daemon refused the old values of webHttpPort: Invalid argument; kobctl doctor shows them\n");
    EXPECT_FALSE(IsPending());
    const Ran doctor = RunLine("doctor");
    EXPECT_EQ(doctor.status, 1);
    EXPECT_NE(doctor.output.find("these old values could not be set back: webHttpPort=0"), std::string::npos);
    EXPECT_EQ(RunLine("confirm").output, "forgotten: webHttpPort=0\n");
    EXPECT_EQ(RunLine("doctor").status, 0);
}

TEST_F(KobctlConfirm, WhatWasSetInBetweenStays)
{
    EXPECT_EQ(RunLine("set --confirm 60 webHttpPort=81 webHttpEnable=0").status, 0);
    EXPECT_EQ(KillWaiting(), 1);
    EXPECT_EQ(RunLine("set webHttpPort=82 webHttpsPort=8443").status, 0);
    Expire();
    EXPECT_EQ(
        RunLine("get webHttpPort webHttpEnable webHttpsPort").errors,
        "kobctl: not confirmed in time, the old values are back: webHttpPort, webHttpEnable; but what was changed "
        "since stays: webHttpPort\n");
    EXPECT_EQ(RunLine("get webHttpPort webHttpEnable webHttpsPort").output,
              "webHttpPort=82\nwebHttpEnable=1\nwebHttpsPort=8443\n");
}

TEST_F(KobctlConfirm, WhatCannotBeTakenBackIsRefused)
{
    const char* session = R"session($ kobctl set --confirm 60 systemReboot=1
! kobctl: set --confirm: systemReboot is an action: it cannot be taken back; nothing was set
[1]
$ kobctl set --confirm 60 webHttpPort=81 webHttpEnable=2
! kobctl: set --confirm: webHttpEnable=2: it takes 0 or 1; nothing was set
[1]
$ kobctl set --confirm 60 webHttpPort=81 webHttpPrt=2
! kobctl: set --confirm: there is no object webHttpPrt, did you mean webHttpPort?; nothing was set
[1]
$ kobctl set --confirm 60 --silent webHttpPort=81
! kobctl: set takes --silent or --confirm, not both; see kobctl help set
[2]
$ kobctl set --confirm 0 webHttpPort=81
! kobctl: --confirm takes seconds from 1 to 604800, not '0'; see kobctl help
[2]
$ kobctl set --confirm 60 webHttpPort=81 networkLanSettingIp=192.168.1.0
! kobctl: networkLanSettingIp=192.168.1.0: it takes an IPv4 address that is no network address under networkLanSettingMask and not in 10.254.254.x: Invalid argument (2)
[1]
$ kobctl get webHttpPort
80
$ kobctl confirm
! kobctl: there is nothing to confirm
[1]
)session";
    EXPECT_EQ(Replay(session), session);
}
}  // namespace
}  // namespace kobd::test
