// The real daemon on real queues: what a client sees of durability, hostile messages, killed clients
// and signals.
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <random>

#include "daemon/base/messages.h"
#include "tests/system/daemon_test.h"

namespace kobd::test
{
namespace
{
using System = DaemonTest;

TEST_F(System, CommittedValuesSurviveKillsAtAnyMoment)
{
    std::mt19937 random(1);
    int committed = 1000;
    ASSERT_EQ(Set("webHttpPort", "1000"), 0);
    for (int kill_number = 0; kill_number < 20; ++kill_number)
    {
        const pid_t killer = fork();
        if (killer == 0)
        {
            usleep(static_cast<useconds_t>(random() % 20000));
            kill(daemon_.Process(), SIGKILL);
            _exit(0);
        }
        int attempted = committed;
        for (int i = 0; i < 200; ++i)
        {
            attempted = committed + 1;
            const Answer answer =
                Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, std::to_string(attempted)}}, 300);
            if (answer.bus != 0) break;
            ASSERT_EQ(answer.result, 0);
            committed = attempted;
        }
        waitpid(killer, nullptr, 0);
        Restart();
        const std::string value = Get("webHttpPort");
        // The set that was killed may or may not have been committed; it may not be half there.
        EXPECT_TRUE(value == std::to_string(committed) || value == std::to_string(attempted)) << value;
        committed = std::stoi(value);
    }
}

TEST_F(System, UncommittedSilentSetIsGoneAfterAKillAndThereAfterAnUpdate)
{
    ASSERT_EQ(Set("webHttpPort", "1111", kSetSilent), 0);
    EXPECT_EQ(Get("webHttpPort"), "1111");
    Restart();
    EXPECT_NE(Get("webHttpPort"), "1111");
    ASSERT_EQ(Set("webHttpPort", "1112", kSetSilent), 0);
    EXPECT_EQ(Request(kUpdate, {}).result, 0);
    Restart();
    EXPECT_EQ(Get("webHttpPort"), "1112");
}

TEST_F(System, DamagedStateIsKeptAsideAndReported)
{
    ASSERT_EQ(Set("webHttpPort", "1234"), 0);
    daemon_.End(SIGTERM);
    ASSERT_EQ(system("rm /tmp/state/kobd.db-*; echo damaged >/tmp/state/kobd.db"), 0);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_NE(Get("webHttpPort"), "1234");
    EXPECT_TRUE(LogSays("is damaged, kept as /tmp/state/kobd.db.damaged-"));
    EXPECT_EQ(system("grep -q damaged /tmp/state/kobd.db.damaged-*"), 0);
}

TEST_F(System, EverySignalLogsItsNumberAndEndsWithStatusZero)
{
    for (const int number : {SIGTERM, SIGINT, SIGQUIT, SIGUSR1, SIGUSR2, SIGBUS})
    {
        const auto start = std::chrono::steady_clock::now();
        const int status = daemon_.End(number);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << number;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3)) << number;
        EXPECT_TRUE(LogSays("sig_handler[20]: recv signal:" + std::to_string(number)));
        EXPECT_TRUE(LogSays("sig_handler[24]: Get sig " + std::to_string(number) + ", exit..."));
        ASSERT_TRUE(daemon_.Start());
    }
    kill(daemon_.Process(), SIGHUP);
    kill(daemon_.Process(), SIGPIPE);
    EXPECT_NE(Get("webHttpPort"), "nothing") << "ignored signals leave it running";
}

TEST_F(System, ASecondDaemonServesNothingAndTakesNothing)
{
    const pid_t second = daemon_.Spawn();
    usleep(1000000);
    EXPECT_TRUE(LogSays("cannot join the bus as module 0x5A510001 yet: process " + std::to_string(daemon_.Process()) +
                        " has it"));
    for (int i = 0; i < 20; ++i) EXPECT_NE(Get("webHttpPort"), "nothing");
    kill(second, SIGTERM);
    int status = 0;
    waitpid(second, &status, 0);
    EXPECT_NE(Get("webHttpPort"), "nothing") << "the first one still serves";
}

TEST_F(System, RandomMessagesLeaveTheDaemonServing)
{
    std::mt19937 random(7);
    const int queue = msgget(static_cast<key_t>(kModuleKobd), 0);
    ASSERT_GE(queue, 0);
    struct
    {
        long type = 1;
        char bytes[kMessageMax];
    } message;
    for (int i = 0; i < 500; ++i)
    {
        for (char& byte : message.bytes) byte = static_cast<char>(random());
        const uint32_t code = (1 + random() % 15) << 16 | kClassRequest;
        const uint32_t nobody = 0;
        if (i % 2 == 0) memcpy(message.bytes + 36, &code, sizeof code);
        memcpy(message.bytes + 4, &nobody, sizeof nobody);
        while (msgsnd(queue, &message, random() % kMessageMax, IPC_NOWAIT) != 0) usleep(1000);
    }
    EXPECT_NE(Get("webHttpPort"), "nothing");
}

TEST_F(System, QueuesOfKilledClientsAreReclaimed)
{
    for (int i = 0; i < 50; ++i)
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
    usleep(5000000);
    std::ifstream list("/proc/sysvipc/msg");
    int queues = -1;  // the heading
    for (std::string line; std::getline(list, line);) ++queues;
    EXPECT_EQ(queues, 1) << "the daemon's own";
}
}  // namespace
}  // namespace kobd::test
