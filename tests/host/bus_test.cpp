// The message bus on real System V queues: requests, replies, deadlines, and what is taken away from outside.
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "host/bus/bus.h"
#include "host/bus/late_modules.h"
#include "tests/host/bus_fixture.h"

namespace kobd::test
{
TEST_F(Bus, CallIsAnsweredByItsHandler)
{
    for (const size_t size : {size_t{0}, size_t{1}, size_t{4}, size_t{100}, kPayloadMax})
    {
        Message request(kEcho, std::string(size, 'p'));
        EXPECT_EQ(Call(request), 0) << size;
        EXPECT_EQ(reply_.Payload(), std::string(size, 'p'));
        EXPECT_EQ(last_length, static_cast<int>(size));
    }
}

TEST_F(Bus, ModuleHasOneOwner)
{
    EXPECT_EQ(MessageInitialize(kModuleKobd), 9) << "already joined";
    BusClient second;
    EXPECT_EQ(BusClientJoin(&second, kModuleKobd), 9);
    BusClientClose(&second);
    ExpectServing("the refused claim took nothing away");
    MessageDestroy();
    Message request(kEcho);
    EXPECT_EQ(Call(request), 3) << "nobody has the module";
    EXPECT_EQ(Join(kModuleKobd), 0) << "given back";
    ExpectServing("joined again");
}

TEST_F(Bus, DeadlineOfACall)
{
    Message mute(kMute);
    EXPECT_EQ(Call(mute, 50), 8) << "the handler sends no reply";
    Message unknown(99);
    EXPECT_EQ(Call(unknown, 50), 8) << "no handler for it";
    Message elsewhere(kEcho, "", kModuleForward);
    EXPECT_EQ(Call(elsewhere), 3) << "nobody has that module";
    ExpectServing("after calls without an answer");
}

TEST_F(Bus, OnlyWhatArrivedReachesAHandler)
{
    constexpr size_t kHeader = sizeof(MessageHeader);
    const std::string refused("\0\0\4\0\2\0\0\0", 8);  // result 2
    const struct
    {
        uint16_t length;  // as the header says
        size_t size;      // that is sent
        std::string reply;
        const char* why;
    } cases[] = {
        {5, kHeader + 4, refused, "one byte more than arrived"}, {UINT16_MAX, kHeader, refused, "far more"},
        {2, kHeader + 100, "12", "bytes behind the payload"},    {0, 0, "", "an empty message is no request"},
        {0, kHeader - 1, "", "nor is less than a header"},
    };
    for (const auto& one : cases)
    {
        Message request(kEcho, "1234");
        request.Header()->length = one.length;
        ASSERT_EQ(SendRaw(request, one.size, client_.queue), 0);
        if (one.reply.empty()) continue;
        ASSERT_EQ(BusClientReceive(&client_, reply_.Header(), 5000), 0) << one.why;
        EXPECT_EQ(reply_.Payload(), one.reply) << one.why;
    }
    ExpectServing("after all of them");
    EXPECT_EQ(handled, 2);
}

TEST_F(Bus, AnyNumberOfAReplyQueueIsSurvived)
{
    const int64_t queues[] = {
        INT32_MIN - int64_t{1}, INT32_MIN, -2, INT32_MAX - 1, ModuleQueue(kModuleKobd, false),  // the daemon's own
    };
    for (const int64_t queue : queues)
    {
        handled = 0;
        Message request(kEcho, "nobody");
        ASSERT_EQ(SendRaw(request, sizeof(MessageHeader) + 6, queue), 0);
        Message sync(kMute);
        EXPECT_EQ(Call(sync, 50), 8) << queue;
        EXPECT_EQ(handled, 2) << queue;
        EXPECT_EQ(reply_code, 5) << queue;
    }
    ExpectServing("after requests that name no queue of a client");
}

TEST_F(Bus, ALateModuleCostsOneBoundInTenSeconds)
{
    BusClient late;
    ASSERT_EQ(BusClientJoin(&late, kModuleNotify), 0);
    const auto fill = [&]
    {
        Message small(kEcho, "", kModuleNotify);
        while (BusClientSend(&client_, small.Header(), 0) == 0) continue;
    };
    const auto read_one = [&] { return BusClientReceive(&late, reply_.Header(), 0) == 0; };
    const auto spent = [this]
    {
        Message request(kAnnounce);
        const int64_t start = NowMs();
        EXPECT_EQ(Call(request), 0) << "the reply comes all the same";
        return NowMs() - start;
    };
    fill();
    const int64_t first = spent();
    EXPECT_GE(first, 90) << "a short wait for room";
    EXPECT_LT(first, 400) << "ten notifications share 100 ms, they do not have them each";
    EXPECT_LT(spent(), 90) << "it has not read and is not waited for";
    while (read_one()) continue;
    spent();
    for (int number = 0; number < kAnnouncements; ++number)
        EXPECT_TRUE(read_one()) << "it reads again and misses nothing: " << number;
    fill();
    int64_t slowly = 0;
    for (int request = 0; request < 10; ++request) slowly += read_one() ? spent() : 0;
    EXPECT_LT(slowly, 90) << "one that reads slowly has had its time, too";
    BusClientClose(&late);
}

TEST(LateModules, TenSecondsLaterOneThatReadsIsGivenTimeAgain)
{
    const struct
    {
        int64_t at_ms;
        int left;
        int waited;  // by the message that is sent then
        bool arrived;
    } messages[] = {
        {0, 100, 30, true},   {10, 70, 70, true},  {9999, 0, 0, true},    {10000, 100, 100, false},
        {30000, 0, 0, false}, {30001, 0, 0, true}, {30002, 100, 0, true},
    };
    for (const auto& message : messages)
    {
        EXPECT_EQ(WaitLeftFor(1, message.at_ms), message.left) << message.at_ms;
        NoteMessageTo(1, message.at_ms, message.waited, message.arrived);
    }
}

TEST_F(Bus, AClientThatTakesNoRepliesCostsTheOthersNothing)
{
    for (const bool narrow : {false, true})
    {
        BusClient stuck;
        ASSERT_EQ(BusClientOpen(&stuck), 0);
        msqid_ds state = {};
        ASSERT_EQ(msgctl(stuck.queue, IPC_STAT, &state), 0);
        state.msg_qbytes = narrow ? 1 : 2000;
        ASSERT_EQ(msgctl(stuck.queue, IPC_SET, &state), 0);
        const OutputCapture output;
        const int64_t start = NowMs();
        handled = 0;
        for (int request = 0; request < 200; ++request)
        {
            Message ask(kEcho, std::string(60, 'a'));
            ASSERT_EQ(BusClientSend(&stuck, ask.Header(), 1000), 0) << request;
        }
        ExpectServing("behind two hundred requests whose replies go nowhere");
        EXPECT_LT(NowMs() - start, 500) << "no reply was waited for";
        const std::string said = output.Text();
        const size_t line = said.find("dropped, its queue takes no more");
        EXPECT_NE(line, std::string::npos);
        EXPECT_EQ(said.find("dropped", line + 1), std::string::npos) << "one line a client: " << said;
        BusClientClose(&stuck);
    }
}

TEST_F(BusQueues, WhileTheModuleIsTakenNothingIsLoadedAndNothingIsTaken)
{
    static std::atomic<int> loaded = 0;
    BusClient other;
    ASSERT_EQ(BusClientJoin(&other, kModuleKobd), 0);
    BusCall({.prepare = [] { ++loaded; }});
    for (const bool leaves : {false, true})
    {
        const OutputCapture output;
        ASSERT_EQ(MessageInitialize(kModuleKobd), 0) << "it returns at once";
        usleep(100000);
        EXPECT_EQ(loaded, 0);
        EXPECT_NE(output.Text().find("yet: process " + std::to_string(getpid()) + " has it"), std::string::npos);
        if (leaves) BusClientClose(&other);
        EXPECT_TRUE(AwaitModule(kModuleKobd));
        MessageDestroy();
        EXPECT_EQ(loaded, leaves ? 1 : 0);
    }
    BusCall({});
}

TEST_F(Bus, QueueRemovedFromOutsideIsTakenAnew)
{
    ExpectServing("before");
    ASSERT_EQ(msgctl(ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr), 0);
    for (int look = 0; look < 500 && ModuleQueue(kModuleKobd, false) < 0; ++look) usleep(10000);
    ExpectServing("after");
}

TEST_F(Bus, ASemaphoreRemovedFromOutsideIsTakenAnew)
{
    semctl(ModuleClaim(kModuleKobd), 0, IPC_RMID);
    ASSERT_TRUE(AwaitModule(kModuleKobd));
    ExpectServing("after it took the semaphore again");
    semctl(ModuleClaim(kModuleKobd), 0, IPC_RMID);
    BusClient other;
    ASSERT_EQ(BusClientJoin(&other, kModuleKobd), 0) << "somebody was faster";
    usleep(2500000);
    Message stolen(kEcho);
    EXPECT_NE(Call(stolen, 100), 0) << "it serves nothing beside the other";
    BusClientClose(&other);
    ASSERT_TRUE(AwaitModule(kModuleKobd));
    ExpectServing("when the other had left");
}

TEST_F(Bus, AnAddressThatIsNoModulesTakesNothingFromTheSystem)
{
    const std::string before = FileText("/proc/sysvipc/sem");
    Message nowhere(kEcho, "", 0);
    EXPECT_EQ(Call(nowhere), 3);
    EXPECT_EQ(MessageSend(nowhere.Header()), 3);
    EXPECT_EQ(FileText("/proc/sysvipc/sem"), before);
}

TEST_F(Bus, ADaemonThatEndsLetsNobodyWaitForItsReply)
{
    std::thread ending(
        []
        {
            usleep(100000);
            MessageDestroy();
        });
    Message request(kMute);
    const int64_t start = NowMs();
    EXPECT_EQ(Call(request, 10000), 3);
    EXPECT_LT(NowMs() - start, 2000);
    ending.join();
}

TEST_F(Bus, LateReplyIsNotTakenForTheNextOne)
{
    Message first(kEcho, "first");
    BusHeader header = LoadBusHeader(first.Header());
    header.sequence = client_.sequence;
    StoreBusHeader(first.Header(), header);
    ASSERT_EQ(SendRaw(first, sizeof(MessageHeader) + 5, client_.queue), 0);
    ExpectServing("its own reply, behind the late one");
}
}  // namespace kobd::test
