// Waiting on the bus: every wait ends in time, costs nothing while it lasts, and knows a daemon that
// went and came back.
#include <gtest/gtest.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <ctime>
#include <thread>
#include <vector>

#include "daemon/base/messages.h"
#include "host/bus/bus_queues.h"
#include "platform/bus_client.h"
#include "tests/joined.h"
#include "tests/namespaces.h"

namespace kobd::test
{
using namespace host;

namespace
{
constexpr uint16_t kEcho = 1;
constexpr int kLateMs = 500;  // a loaded machine may be that late

int Echo(MessageHeader* message) { return MessageSendReply(message); }
const MsgHandler kTable[] = {{"Echo", uint32_t{kEcho} << 16 | kClassRequest, Echo}, {nullptr, 0, nullptr}};

struct Room
{
    alignas(MessageHeader) char bytes[kMessageMax] = {};
    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes); }
};

int Call(BusClient* client)
{
    Room request;
    Room reply;
    *request.Header() = {};
    request.Header()->destination = kModuleKobd;
    request.Header()->message_class = kClassRequest;
    request.Header()->id = kEcho;
    return BusClientCall(client, request.Header(), reply.Header(), 5000);
}

// Waits for a message that never comes; how long, in milliseconds.
int64_t WaitInVain(BusClient* client, int timeout_ms)
{
    Room room;
    const int64_t start = NowMs();
    EXPECT_EQ(BusClientReceive(client, room.Header(), timeout_ms), 8) << timeout_ms;
    return NowMs() - start;
}

class BusWait : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(BusClientOpen(&client_), 0);
    }
    void TearDown() override { BusClientClose(&client_); }

    BusClient client_;
};
}  // namespace

TEST_F(BusWait, EveryWaitEndsInTimeWhateverTheOthersWaitFor)
{
    for (const int timeout_ms : {0, 1, 30, 5})
    {
        const int64_t waited = WaitInVain(&client_, timeout_ms);
        EXPECT_GE(waited, timeout_ms);
        EXPECT_LT(waited, timeout_ms + kLateMs);
    }
    std::vector<std::thread> threads;
    for (const int timeout_ms : {400, 20, 200, 1})
    {
        threads.emplace_back(
            [timeout_ms]
            {
                BusClient client;
                ASSERT_EQ(BusClientOpen(&client), 0);
                const int64_t waited = WaitInVain(&client, timeout_ms);
                EXPECT_GE(waited, timeout_ms);
                EXPECT_LT(waited, timeout_ms + kLateMs);
                BusClientClose(&client);
            });
        usleep(20000);  // so that the thread that ends waits sleeps for the longest when the others come
    }
    for (std::thread& thread : threads) thread.join();
}

TEST_F(BusWait, WaitingTakesNoProcessorTime)
{
    const clock_t before = clock();
    WaitInVain(&client_, 300);
    EXPECT_LT(clock() - before, CLOCKS_PER_SEC / 50) << "20 ms of 300";
}

TEST_F(BusWait, SignalsNeitherEndNorProlongAWait)
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);
    std::atomic<bool> done = false;
    const pthread_t waiting = pthread_self();
    std::thread disturber(
        [&]
        {
            for (; !done; usleep(10000)) pthread_kill(waiting, SIGUSR1);
        });
    const int64_t waited = WaitInVain(&client_, 200);
    done = true;
    disturber.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_GE(waited, 200);
    EXPECT_LT(waited, 200 + kLateMs);
}

TEST_F(BusWait, AnOldWakeDoesNotEndTheNextWait)
{
    const struct
    {
        long type;
        char none;
    } wake = {1, 0};
    ASSERT_EQ(msgsnd(client_.queue, &wake, 0, IPC_NOWAIT), 0);
    EXPECT_GE(WaitInVain(&client_, 50), 50);
}

TEST_F(BusWait, AChildsWaitEndsToo)
{
    WaitInVain(&client_, 1);  // the parent's thread runs; the child has none of it
    const pid_t child = fork();
    if (child == 0)
    {
        alarm(10);  // a wait without an end must not outlive the test
        BusClient client;
        Room room;
        _exit(BusClientOpen(&client) == 0 && BusClientReceive(&client, room.Header(), 50) == 8 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(BusWait, AConnectionOutlivesTheDaemonItKnew)
{
    MessageProccessRegister(kTable);
    for (int life = 0; life < 3; ++life)
    {
        ASSERT_EQ(Join(kModuleKobd), 0);
        EXPECT_EQ(Call(&client_), 0) << life;
        EXPECT_EQ(Call(&client_), 0) << life;
        MessageDestroy();
        EXPECT_EQ(Call(&client_), 3) << "nobody has the module, and that is told at once";
    }
}

TEST_F(BusWait, AConnectionThatFoundADeadDaemonFindsTheNextOne)
{
    const pid_t child = fork();
    if (child == 0)
    {
        BusClient module;
        _exit(BusClientJoin(&module, kModuleKobd));  // leaves queue and semaphore, as one that is killed
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    EXPECT_EQ(Call(&client_), 3);
    MessageProccessRegister(kTable);
    ASSERT_EQ(Join(kModuleKobd), 0);
    EXPECT_EQ(Call(&client_), 0);
    MessageDestroy();
}
}  // namespace kobd::test
