// How the real daemon starts: detached or not, on which state, and when it does not start at all.
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <sstream>

#include "daemon/base/tlv.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_process.h"
#include "tests/system/injected_fault.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

// Starts the daemon from /tmp as a shell does; the exit status that the shell sees.
int Start(const std::string& state, const std::string& options,
          const std::string& streams = " >/tmp/kobd.out 2>&1 </dev/null")
{
    return system(
        ("cd /tmp && KOBD_STATE_DIR=" + state + " exec " KOBD_EMULATOR " " + kPrograms + "kobd " + options + streams)
            .c_str());
}

// The process that has the daemon's module; 0 when nobody has it.
pid_t Holder()
{
    const int claim = semget(static_cast<key_t>(kModuleKobd), 1, 0600);
    return claim >= 0 && semctl(claim, 0, GETVAL) > 0 ? semctl(claim, 0, GETPID) : 0;
}

pid_t AwaitHolder()
{
    for (int i = 0; i < 100 && Holder() == 0; ++i) usleep(100000);
    return Holder();
}

void EndHolder(pid_t daemon)
{
    kill(daemon, SIGTERM);
    for (int i = 0; i < 100 && Holder() != 0; ++i) usleep(100000);
    EXPECT_EQ(Holder(), 0);
    EXPECT_NE(FileText("/tmp/kobd.log").find("Get sig 15, exit..."), std::string::npos);
}

// Daemons in our IPC namespace, whether they serve or not.
int Daemons()
{
    int count = 0;
    std::error_code gone;
    const fs::path own = fs::read_symlink("/proc/self/ns/ipc");
    for (const auto& process : fs::directory_iterator("/proc"))
        if (FileText(process.path().string() + "/comm") == "kobd\n" &&
            fs::read_symlink(process.path() / "ns/ipc", gone) == own)
            ++count;
    return count;
}

class StartUp : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*"), 0);
    }
};

TEST_F(StartUp, DetachedItLeavesTerminalAndFolderButNotItsState)
{
    ASSERT_EQ(Start("state", ""), 0) << "the parent is done";
    const pid_t daemon = AwaitHolder();
    ASSERT_GT(daemon, 0);
    const std::string process = "/proc/" + std::to_string(daemon);
    EXPECT_EQ(fs::read_symlink(process + "/cwd"), "/");
    EXPECT_NE(getsid(daemon), getsid(0));
    EXPECT_NE(getsid(daemon), daemon) << "no leader of its session: it cannot get a terminal again";
    EXPECT_NE(FileText(process + "/status").find("Umask:\t0000"), std::string::npos);

    EXPECT_EQ(Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "4321"}}).result, 0);
    EXPECT_EQ(StateSql("/tmp/state", "SELECT * FROM objects"), "webHttpPort|4321\n");

    EndHolder(daemon);
}

TEST_F(StartUp, DetachedItOutlivesTheTerminalThatItWritesTo)
{
    int screen = -1;
    const pid_t parent = forkpty(&screen, nullptr, nullptr, nullptr);
    if (parent < 0) GTEST_SKIP() << "no terminal here";
    if (parent == 0) _exit(Start("state", "", "") == 0 ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(parent, &status, 0), parent);
    ASSERT_EQ(status, 0);
    const pid_t daemon = AwaitHolder();
    ASSERT_GT(daemon, 0);
    const std::string process = "/proc/" + std::to_string(daemon);
    std::istringstream stat(FileText(process + "/stat"));
    std::string terminal;  // the seventh word: process, name, state, parent, group, session, terminal
    for (int word = 0; word < 7; ++word) stat >> terminal;
    EXPECT_EQ(terminal, "0") << "none controls it";
    for (const char* stream : {"/fd/0", "/fd/1", "/fd/2"})
        EXPECT_TRUE(fs::read_symlink(process + stream).string().starts_with("/dev/pts/")) << stream << " stays";

    // A terminal that is read now and then only: it comes to have room for a part of a line.
    for (size_t count = 0, size = 600; count < 400; ++count, size = 600 + size * 7 % 1399)
    {
        char shown[50000];
        ASSERT_EQ(SetObject("devHostName", std::string(size, 'x')), 2) << count;
        ASSERT_TRUE(count % 45 != 44 || read(screen, shown, size * 20) > 0);
    }
    close(screen);
    EXPECT_EQ(SetObject("webHttpPort", "99999"), 2) << "told on a terminal that is gone, and in the log";
    EXPECT_NE(FileText("/tmp/kobd.log").find("webHttpPort"), std::string::npos);
    EXPECT_EQ(SetObject("webHttpPort", "4322"), 0);
    EndHolder(daemon);
}

TEST_F(StartUp, AForkThatFailsIsToldAndLeavesNoDaemon)
{
    SKIP_WITHOUT_FAULTS();
    for (const int forks : {0, 1})  // that go well before
    {
        InjectedFault fault;
        unlink("/tmp/kobd.log");
        fault.Arm(Call::kFork, "*", EAGAIN, INT_MAX, forks);
        EXPECT_EQ(Start("state", ""), 0) << "the parent's status";
        for (int i = 0; i < 100 && Daemons() != 0; ++i) usleep(100000);
        EXPECT_EQ(Daemons(), 0);
        EXPECT_EQ(fault.Struck(), 1);
        EXPECT_EQ(Holder(), 0);
        EXPECT_FALSE(fs::exists("/tmp/state"));
        const std::string told = "cannot go into the background: fork: Resource temporarily unavailable";
        EXPECT_NE(FileText("/tmp/kobd.log").find(told), std::string::npos);
        EXPECT_NE(FileText("/tmp/kobd.out").find(told), std::string::npos);
    }
}

TEST_F(StartUp, AnUnknownOptionEndsItBeforeAnythingIsDone)
{
    for (const char* options : {"-x", "-F -x", "-Fx"})
    {
        unlink("/tmp/kobd.log");
        EXPECT_EQ(Start("state", options), 0) << options;
        EXPECT_EQ(Holder(), 0) << options;
        EXPECT_FALSE(fs::exists("/tmp/kobd.log")) << options;
        EXPECT_FALSE(fs::exists("/tmp/state")) << options;
        EXPECT_EQ(FileText("/tmp/kobd.out").find("kernel.msg"), std::string::npos) << options;
    }
}

// The next daemon starts while the last one is ending: what was answered is there, whoever answered it.
TEST_F(StartUp, AHandoverLosesNoSetThatWasAnswered)
{
    DaemonProcess daemons("/tmp/state");
    pid_t last = daemons.Spawn();
    std::string answered = "80";
    for (int handover = 0; handover < 10; ++handover)
    {
        const pid_t next = daemons.Spawn();
        for (int set = 0; set < 100; ++set, usleep(1000))  // the next one reaches its load meanwhile
        {
            if (set == 10 * handover) kill(last, SIGTERM);
            const std::string value = std::to_string(1000 + handover * 100 + set);
            const int result = Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, value}}, 500).result;
            if (result == 0) answered = value;
        }
        for (int i = 0; i < 1000 && Holder() != next; ++i) usleep(10000);
        ASSERT_EQ(Holder(), next);
        for (int i = 0; i < 100 && GetObject("webHttpPort") == "nothing"; ++i) usleep(10000);
        EXPECT_EQ(GetObject("webHttpPort"), answered) << handover;
        waitpid(last, nullptr, 0);
        last = next;
    }
    kill(last, SIGTERM);
    EXPECT_EQ(waitpid(last, nullptr, 0), last);
}

TEST_F(StartUp, AStateFolderThatCannotBeWrittenIsReportedAtOnce)
{
    DaemonProcess daemon("/proc/nowhere");
    ASSERT_TRUE(daemon.Start()) << "it serves what the factory gave it";
    EXPECT_NE(FileText("/tmp/kobd.log").find("cannot write in the state folder /proc/nowhere: "), std::string::npos);
}
}  // namespace
}  // namespace kobd::test
