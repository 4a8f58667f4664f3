// How the real daemon starts: detached or not, on which state, and when it does not start at all.
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "daemon/tlv.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

// Starts the daemon from /tmp as a shell does; the exit status that the shell sees.
int Start(const std::string& state, const std::string& options)
{
    return system(("cd /tmp && KOBD_STATE_DIR=" + state + " " KOBD_EMULATOR " " + kPrograms + "kobd " + options +
                   " >/tmp/kobd.out 2>&1 </dev/null")
                      .c_str());
}

// The process that has the daemon's module; 0 when nobody has it.
pid_t Holder()
{
    const int claim = semget(static_cast<key_t>(kModuleKobd), 1, 0600);
    return claim >= 0 && semctl(claim, 0, GETVAL) > 0 ? semctl(claim, 0, GETPID) : 0;
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
    pid_t daemon = 0;
    for (int i = 0; i < 100 && (daemon = Holder()) == 0; ++i) usleep(100000);
    ASSERT_GT(daemon, 0);
    const std::string process = "/proc/" + std::to_string(daemon);
    EXPECT_EQ(fs::read_symlink(process + "/cwd"), "/");
    EXPECT_NE(getsid(daemon), getsid(0));
    EXPECT_NE(getsid(daemon), daemon) << "no leader of its session: it cannot get a terminal again";
    EXPECT_NE(FileText(process + "/status").find("Umask:\t0000"), std::string::npos);

    EXPECT_EQ(Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "4321"}}).result, 0);
    EXPECT_NE(FileText("/tmp/state/objects").find("webHttpPort=4321\n"), std::string::npos);

    kill(daemon, SIGTERM);
    for (int i = 0; i < 100 && Holder() != 0; ++i) usleep(100000);
    EXPECT_EQ(Holder(), 0);
    EXPECT_NE(FileText("/tmp/kobd.log").find("Get sig 15, exit..."), std::string::npos);
}

TEST_F(StartUp, AnUnknownOptionEndsItBeforeAnythingIsDone)
{
    for (const char* options : {"-x", "-F -x", "-Fx"})
    {
        EXPECT_EQ(Start("state", options), 0) << options;
        EXPECT_EQ(Holder(), 0) << options;
        EXPECT_FALSE(fs::exists("/tmp/kobd.log")) << options;
        EXPECT_FALSE(fs::exists("/tmp/state")) << options;
        EXPECT_EQ(FileText("/tmp/kobd.out").find("kernel.msg"), std::string::npos) << options;
    }
}

TEST_F(StartUp, AStateFolderThatCannotBeWrittenIsReportedAtOnce)
{
    DaemonProcess daemon("/proc/nowhere");
    ASSERT_TRUE(daemon.Start()) << "it serves what the factory gave it";
    EXPECT_NE(FileText("/tmp/kobd.log").find("cannot write in the state folder /proc/nowhere: "), std::string::npos);
}
}  // namespace
}  // namespace kobd::test
