// The real daemon on real queues: signals and killed clients.
#include <sys/wait.h>

#include <algorithm>

#include "tests/system/daemon_test.h"

namespace kobd::test
{
namespace
{
using System = DaemonTest;

TEST_F(System, EverySignalLogsItsNumberAndEndsWithStatusZero)
{
    for (const int number : {SIGTERM, SIGINT, SIGQUIT, SIGUSR1, SIGUSR2, SIGBUS})
    {
        const std::string value = std::to_string(8000 + number);
        EXPECT_EQ(SetObject("webHttpsPort", value), 0);
        const int64_t start = NowMs();
        EXPECT_EQ(daemon_.End(number), 0) << number;
        EXPECT_LT(NowMs() - start, 3000) << number;
        EXPECT_NE(FileText(kState + "/kobd.db").find("webHttpsPort" + value), std::string::npos)
            << "the database is whole without its log";
        EXPECT_TRUE(LogSays("sig_handler[20]: recv signal:" + std::to_string(number)));
        EXPECT_TRUE(LogSays("sig_handler[24]: Get sig " + std::to_string(number) + ", exit..."));
        ASSERT_TRUE(daemon_.Start());
    }
    kill(daemon_.Process(), SIGHUP);
    kill(daemon_.Process(), SIGPIPE);
    EXPECT_EQ(GetObject("webHttpPort"), "80") << "ignored signals leave it running";
}

TEST_F(System, QueuesOfKilledClientsAreReclaimed)
{
    for (int i = 0; i < 1000; ++i)
    {
        const pid_t victim = fork();
        if (victim == 0)
        {
            BusClient client;
            BusClientOpen(&client);
            raise(SIGKILL);
        }
        waitpid(victim, nullptr, 0);
    }
    const auto queues = []
    {
        const std::string list = FileText("/proc/sysvipc/msg");
        return std::count(list.begin(), list.end(), '\n') - 1;  // but for the heading
    };
    EXPECT_GT(queues(), 1);
    EXPECT_TRUE(Await([&] { return queues() == 1; })) << "the daemon's own is left";
}
}  // namespace
}  // namespace kobd::test
