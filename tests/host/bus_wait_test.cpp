// Waiting on the bus: every wait ends in time, costs nothing while it lasts, and finds a daemon that came back.
#include <sys/resource.h>

#include <csignal>
#include <ctime>
#include <thread>
#include <vector>

#include "tests/host/bus_fixture.h"
#include "tests/host/in_child.h"

namespace kobd::test
{
namespace
{
using BusWait = BusQueues;

constexpr int kLateMs = 500;  // a loaded machine may be that late

// Waits for a message that never comes.
void WaitInVain(BusClient* client, int timeout_ms)
{
    Message message;
    const int64_t start = NowMs();
    EXPECT_EQ(BusClientReceive(client, message.Header(), timeout_ms), 8) << timeout_ms;
    const int64_t waited = NowMs() - start;
    EXPECT_GE(waited, timeout_ms);
    EXPECT_LT(waited, timeout_ms + kLateMs);
}
// How often this process has slept.
long Sleeps()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return used.ru_nvcsw;
}
}  // namespace

TEST_F(BusWait, EveryWaitEndsInTimeWhateverTheOthersWaitFor)
{
    for (const int timeout_ms : {0, 1, 30, 5}) WaitInVain(&client_, timeout_ms);
    const auto wait = [](int timeout_ms)
    {
        BusClient client;
        EXPECT_EQ(BusClientOpen(&client), 0);
        WaitInVain(&client, timeout_ms);
        BusClientClose(&client);
    };
    const clock_t before = clock();
    const long slept = Sleeps();
    std::vector<std::thread> threads;
    for (const int timeout_ms : {400, 20, 200, 1})
    {
        threads.emplace_back(wait, timeout_ms);
        usleep(20000);  // so that the thread that ends waits sleeps for the longest when the others come
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_LT(clock() - before, CLOCKS_PER_SEC / 4) << "waiting for 400 ms takes no processor time";
    EXPECT_LT(Sleeps() - slept, 200) << "a wait is one sleep, and no look every 200 us";
}

TEST_F(BusWait, SignalsNeitherEndNorProlongAWait)
{
    const auto before = signal(SIGUSR1, [](int) {});
    std::atomic<bool> done = false;
    std::thread disturber(
        [&done, waiting = pthread_self()]
        {
            for (; !done; usleep(10000)) pthread_kill(waiting, SIGUSR1);
        });
    WaitInVain(&client_, 200);
    done = true;
    disturber.join();
    signal(SIGUSR1, before);
}

TEST_F(BusWait, AnOldWakeDoesNotEndTheNextWait)
{
    const long wake[] = {1};
    ASSERT_EQ(msgsnd(client_.queue, wake, 0, IPC_NOWAIT), 0);
    WaitInVain(&client_, 50);
}

TEST_F(BusWait, AConnectionThatFoundADeadDaemonFindsTheNextOne)
{
    BusClient module;  // queue and semaphore stay behind, as of one that is killed
    ASSERT_EQ(InChild(geteuid(), [&] { return BusClientJoin(&module, kModuleKobd); }), 0);
    EXPECT_EQ(Call(Message(kEcho)), 3);
    ASSERT_EQ(Join(kModuleKobd), 0);
    ExpectServing("the next one");
}
}  // namespace kobd::test
