// How the real daemon starts: detached or not, on which state, and when it does not start at all.
#include <pty.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <sys/wait.h>

#include <filesystem>
#include <sstream>

#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/injected_fault.h"
#include "tests/system/kobctl_program.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

// Starts the daemon from /tmp as a shell does; the exit status that the shell sees.
int StartByShell(const std::string& options, const std::string& streams = " >/tmp/kobd.out 2>&1 </dev/null")
{
    const std::string program = "exec " + Emulator() + " " + kPrograms + "kobd ";
    return system(("cd /tmp && KOBD_STATE_DIR=state " + program + options + streams).c_str());
}

// The process that has the daemon's module; 0 when nobody has it.
pid_t Holder()
{
    const int claim = semget(static_cast<key_t>(kModuleKobd), 1, 0600);
    return claim >= 0 && semctl(claim, 0, GETVAL) > 0 ? semctl(claim, 0, GETPID) : 0;
}

// Whether any daemon of this IPC namespace is there, serving or not.
bool AnyDaemon()
{
    std::error_code gone;
    const fs::path own = fs::read_symlink("/proc/self/ns/ipc");
    for (const auto& process : fs::directory_iterator("/proc"))
        if (FileText(process.path().string() + "/comm") == "kobd\n" &&
            fs::read_symlink(process.path() / "ns/ipc", gone) == own)
            return true;
    return false;
}

class StartUp : public SystemTest
{
protected:
    // The folder of a detached daemon in /proc, once it serves.
    std::string Detached()
    {
        EXPECT_TRUE(Await([] { return Holder() != 0; }));
        detached_ = Holder();
        return "/proc/" + std::to_string(detached_);
    }

    void TearDown() override
    {
        if (detached_ == 0) return;
        kill(detached_, SIGTERM);
        EXPECT_TRUE(Await([] { return Holder() == 0; }));
        EXPECT_TRUE(LogSays("Get sig 15, exit..."));
    }

    pid_t detached_ = 0;
};

TEST_F(StartUp, DetachedItLeavesTheFolderAndOutlivesTheTerminalThatItWritesTo)
{
    int screen = -1;
    const pid_t parent = forkpty(&screen, nullptr, nullptr, nullptr);
    if (parent < 0) GTEST_SKIP() << "no terminal here";
    if (parent == 0) _exit(StartByShell("", "") == 0 ? 0 : 1);
    int status = -1;
    ASSERT_EQ(waitpid(parent, &status, 0), parent);
    ASSERT_EQ(status, 0);
    const std::string process = Detached();
    EXPECT_EQ(fs::read_symlink(process + "/cwd"), "/");
    EXPECT_NE(FileText(process + "/status").find("Umask:\t0000"), std::string::npos);
    EXPECT_NE(getsid(detached_), parent) << "the terminal does not control it";
    EXPECT_NE(getsid(detached_), detached_) << "no leader of its session: it cannot get a terminal again";
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
    EXPECT_TRUE(LogSays("webHttpPort"));
    EXPECT_EQ(SetObject("webHttpPort", "4321"), 0);
    EXPECT_EQ(StateSql(kState, "SELECT * FROM objects"), "webHttpPort|4321\n") << "in the folder it was started for";
}

TEST_F(StartUp, AForkThatFailsIsToldAndLeavesNoDaemon)
{
    SKIP_WITHOUT_FAULTS();
    for (const int forks : {0, 1})  // that go well before
    {
        Clear();
        InjectedFault fault;
        fault.Arm(Call::kFork, "*", EAGAIN, INT_MAX, forks);
        EXPECT_EQ(StartByShell(""), 0) << "the parent's status";
        EXPECT_TRUE(Await([] { return !AnyDaemon(); }));
        EXPECT_EQ(fault.Struck(), 1);
        EXPECT_FALSE(fs::exists(kState));
        const std::string told = "cannot go into the background: fork: Resource temporarily unavailable";
        EXPECT_TRUE(LogSays(told));
        EXPECT_NE(FileText("/tmp/kobd.out").find(told), std::string::npos);
    }
}

// The next daemon starts while the last one is ending: what was answered is there, whoever answered it.
TEST_F(StartUp, AHandoverLosesNoSetThatWasAnswered)
{
    DaemonProcess daemons[2] = {DaemonProcess(kState), DaemonProcess(kState)};
    ASSERT_TRUE(daemons[0].Start());
    std::string answered = "80";
    for (int handover = 0; handover < 10; ++handover)
    {
        DaemonProcess& last = daemons[handover % 2];
        DaemonProcess& next = daemons[(handover + 1) % 2];
        next.Spawn();
        EXPECT_TRUE(handover != 0 || LogSays("cannot join the bus as module 0x5A510001 yet: process " +
                                             std::to_string(last.Process()) + " has it"));
        for (int set = 0; set < 50; ++set, usleep(1000))  // the next one reaches its load meanwhile
        {
            if (set == 5 * handover) kill(last.Process(), SIGTERM);
            const std::string value = std::to_string(1000 + handover * 100 + set);
            const Answer answer = Request(kReqObjSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, value}}, 500);
            if (answer.result == 0) answered = value;
        }
        EXPECT_TRUE(Await([&] { return Holder() == next.Process(); }));
        EXPECT_TRUE(Await([] { return GetObject("webHttpPort") != "nothing"; }));
        EXPECT_EQ(GetObject("webHttpPort"), answered) << handover;
        last.End(SIGTERM);
    }
}
TEST_F(StartUp, ADaemonOfAUserIsAskedByThatUserAndByRootAlone)
{
    const std::string as = "as() { as=$1; shift; setpriv --reuid $as --regid $as --clear-groups \"$@\"; };";
    PutOnPath("kobd", Exec("kobd"));
    if (RunShell(as + "as 65534 kobctl --version").status != 0) GTEST_SKIP() << "no second user here who could run it";
    const auto module = static_cast<key_t>(kModuleKobd);  // which a killed daemon of root's may have left to root
    semctl(semget(module, 1, 0), 0, IPC_RMID);
    msgctl(msgget(module, 0), IPC_RMID, nullptr);
    const auto said = RunShell(as + R"(
mkdir /tmp/home; chown 65534 /tmp/home; export KOBD_STATE_DIR=/tmp/home/state
setpriv --reuid 65534 --regid 65534 --clear-groups kobd -F >/tmp/kobd.out 2>&1 &
as 65534 kobctl wait; as 65534 kobctl set webHttpPort=8080
kobctl set webHttpPort=8081; kobctl table set DnsClientTable 1 Enable=0; kobctl table get DnsClientTable 1 | tail -n 1 | cut -c -8
as 65534 kobctl undo; as 65534 kobctl get webHttpPort
as 12345 kobctl get webHttpPort; as 12345 kobctl table set DnsClientTable 1 Enable=1
as 12345 kobctl doctor | grep daemon; kill $!; wait
)");
    EXPECT_EQ(
        said.Text(),
        "    1  0\nas before: DnsClientTable 1\n8081\n"
        "WRONG daemon   kobd runs as nobody, and only nobody and root may ask it\n"
        "WRONG queue    0x5A510001 (kobd): Permission denied: be the daemon's user or root\n"
        "WRONG state    /tmp/home/state: Permission denied: KOBD_STATE_DIR has to name the daemon's folder\n"
        "! kobctl: get: kobd runs as nobody, and only nobody and root may ask it: Message not running (3)\n"
        "! kobctl: table set: kobd runs as nobody, and only nobody and root may ask it: Message not running (3)\n");
}
}  // namespace
}  // namespace kobd::test
