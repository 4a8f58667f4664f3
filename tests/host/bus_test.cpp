// The message bus on real System V queues: requests, replies, deadlines, and what is taken away from outside.
#include "host/bus/bus.h"

#include <sys/sem.h>
#include <unistd.h>

#include <thread>

#include "host/bus/late_modules.h"
#include "tests/host/bus_fixture.h"

namespace kobd::test
{
namespace
{
bool AwaitText(const OutputCapture& output, const std::string& text)
{
    for (int look = 0; look < 500; ++look, usleep(10000))
        if (output.Text().find(text) != std::string::npos) return true;
    return false;
}
}  // namespace

TEST_F(Bus, AModuleHasOneOwnerAndAConnectionOutlivesIt)
{
    for (int life = 0; life < 3; ++life)
    {
        BusClient second;
        EXPECT_EQ(MessageInitialize(kModuleKobd), 9) << "already joined";
        EXPECT_EQ(BusClientJoin(&second, kModuleKobd), 9);
        BusClientClose(&second);
        ExpectServing("the refused claims took nothing away");
        MessageDestroy();
        EXPECT_EQ(Call(Message(kEcho)), 3) << "nobody has the module, and that is told at once";
        ASSERT_EQ(Join(kModuleKobd), 0) << "given back";
    }
}

TEST_F(Bus, ACallWithoutAnAnswerEnds)
{
    const std::string semaphores = FileText("/proc/sysvipc/sem");
    EXPECT_EQ(Call(Message(kMute), 50), 8) << "the handler sends no reply";
    EXPECT_EQ(Call(Message(99), 50), 8) << "no handler for it";
    EXPECT_EQ(Call(Message(kEcho, "", kModuleForward)), 3) << "nobody has that module";
    EXPECT_EQ(Call(Message(kEcho, "", 0)), 3) << "the address that is no module's";
    EXPECT_EQ(MessageSend(Message(kEcho, "", 0).Header()), 3);
    EXPECT_EQ(FileText("/proc/sysvipc/sem"), semaphores) << "no call takes anything from the system";
    ExpectServing("after calls without an answer");
}

TEST_F(Bus, OnlyWhatArrivedIsHandledAndOnlyItsClientIsAnswered)
{
    constexpr size_t kHeader = sizeof(MessageHeader);
    const std::string refused("\0\0\4\0\2\0\0\0", 8);  // result 2
    const std::string largest(kPayloadMax, 'p');
    const int64_t mine = client_.queue;
    const struct
    {
        uint16_t length;      // as the header says
        size_t size;          // that is sent
        int64_t reply_queue;  // another than mine: nobody is answered
        std::string reply;
        bool handled;
        const char* why;
    } cases[] = {
        {kPayloadMax, kMessageMax, mine, largest, true, "the largest message"},
        {1, kHeader + 1, mine, "p", true, "a payload of one byte"},
        {0, kHeader, mine, "", true, "no payload"},
        {2, kHeader + 100, mine, "pp", true, "bytes behind the payload"},
        {5, kHeader + 4, mine, refused, false, "one byte more than arrived"},
        {UINT16_MAX, kHeader, mine, refused, false, "far more than arrived"},
        {0, 0, -1, "", false, "an empty message is no request"},
        {0, kHeader - 1, -1, "", false, "nor is less than a header"},
        {0, kHeader, INT32_MIN - int64_t{1}, "", true, "a queue of no client"},
        {0, kHeader, INT32_MIN, "", true, "a queue of no client"},
        {0, kHeader, -2, "", true, "a queue of no client"},
        {0, kHeader, INT32_MAX - 1, "", true, "a queue of no client"},
        {0, kHeader, ModuleQueue(kModuleKobd, false), "", true, "the daemon's own queue"},
    };
    for (const auto& one : cases)
    {
        handled = 0;
        Message request(kEcho, largest);
        request.Header()->length = one.length;
        ASSERT_EQ(SendRaw(request, one.size, one.reply_queue), 0);
        if (one.reply_queue == mine)
        {
            ASSERT_EQ(BusClientReceive(&client_, reply_.Header(), 5000), 0) << one.why;
            EXPECT_EQ(reply_.Payload(), one.reply) << one.why;
        }
        for (int call = 0; call < 2; ++call) ExpectServing(one.why);
        EXPECT_EQ(handled, one.handled ? 3 : 2) << one.why;
    }
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

TEST_F(Bus, ALateModuleCostsOneBoundAndMissesNothingOnceItReads)
{
    BusClient late;
    ASSERT_EQ(BusClientJoin(&late, kModuleNotify), 0);
    const auto read_one = [&] { return BusClientReceive(&late, reply_.Header(), 0) == 0; };
    const auto spent = [this]
    {
        const int64_t start = NowMs();
        EXPECT_EQ(Call(Message(kAnnounce)), 0) << "the reply comes all the same";
        return NowMs() - start;
    };
    while (BusClientSend(&client_, Message(kEcho, "", kModuleNotify).Header(), 0) == 0) continue;
    const int64_t first = spent();
    EXPECT_GE(first, 90) << "a short wait for room";
    EXPECT_LT(first, 400) << "ten notifications share 100 ms, they do not have them each";
    EXPECT_LT(spent(), 90) << "it has not read and is not waited for";
    while (read_one()) continue;
    spent();
    for (int number = 0; number < kAnnouncements; ++number) EXPECT_TRUE(read_one()) << number;
    BusClientClose(&late);
}

TEST(LateModules, TenSecondsLaterOneThatReadsIsGivenTimeAgain)
{
    static uint32_t module = 0;
    ++module;  // another one each time the test is run
    const auto left_before = [](int64_t at_ms, int waited_ms, bool arrived)
    {
        const int left = WaitLeftFor(module, at_ms);
        NoteMessageTo(module, at_ms, waited_ms, arrived);
        return left;
    };
    EXPECT_EQ(left_before(0, 30, true), 100);
    EXPECT_EQ(left_before(10, 70, true), 70);
    EXPECT_EQ(left_before(9999, 0, true), 0);
    EXPECT_EQ(left_before(10000, 100, false), 100);
    EXPECT_EQ(left_before(30000, 0, false), 0) << "it has not read";
    EXPECT_EQ(left_before(30001, 0, true), 0);
    EXPECT_EQ(left_before(30002, 0, true), 100);
}

TEST_F(Bus, AClientThatTakesNoRepliesCostsTheOthersNothing)
{
    for (const unsigned room : {2000u, 1u})
    {
        BusClient stuck;
        msqid_ds state = {};
        ASSERT_EQ(BusClientOpen(&stuck) + msgctl(stuck.queue, IPC_STAT, &state), 0);
        state.msg_qbytes = room;
        ASSERT_EQ(msgctl(stuck.queue, IPC_SET, &state), 0);
        const OutputCapture output;
        const int64_t start = NowMs();
        for (int request = 0; request < 200; ++request)
            ASSERT_EQ(BusClientSend(&stuck, Message(kEcho, std::string(60, 'a')).Header(), 1000), 0) << request;
        ExpectServing("behind two hundred requests whose replies go nowhere");
        EXPECT_LT(NowMs() - start, 500) << "no reply was waited for";
        const std::string said = output.Text();
        EXPECT_NE(said.find("dropped, its queue takes no more"), std::string::npos);
        EXPECT_EQ(said.find("dropped"), said.rfind("dropped")) << "one line a client: " << said;
        BusClientClose(&stuck);
    }
}

TEST_F(BusQueues, WhileTheModuleIsTakenNothingIsLoadedAndNothingIsTaken)
{
    static std::atomic<int> loaded = 0;
    loaded = 0;
    BusClient other;
    ASSERT_EQ(BusClientJoin(&other, kModuleKobd), 0);
    BusCall({.prepare = [] { ++loaded; }});
    for (const bool leaves : {false, true})
    {
        const OutputCapture output;
        ASSERT_EQ(MessageInitialize(kModuleKobd), 0) << "it returns at once";
        EXPECT_TRUE(AwaitText(output, "yet: process " + std::to_string(getpid()) + " has it"));
        EXPECT_EQ(loaded, 0);
        if (leaves) BusClientClose(&other);
        EXPECT_TRUE(AwaitModule(kModuleKobd));
        MessageDestroy();
        EXPECT_EQ(loaded, leaves ? 1 : 0);
    }
    BusCall({});
}

TEST_F(Bus, WhatIsRemovedFromOutsideIsTakenAnew)
{
    const auto remove_semaphore = [] { return semctl(ModuleClaim(kModuleKobd), 0, IPC_RMID); };
    ASSERT_EQ(msgctl(ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr) + remove_semaphore(), 0);
    ASSERT_TRUE(AwaitModule(kModuleKobd));
    ExpectServing("with another queue and semaphore");

    BusClient other;
    const OutputCapture output;
    ASSERT_EQ(remove_semaphore() + BusClientJoin(&other, kModuleKobd), 0) << "somebody is faster";
    EXPECT_TRUE(AwaitText(output, "another process has the module now"));
    EXPECT_NE(Call(Message(kEcho), 100), 0) << "it serves nothing beside the other";
    BusClientClose(&other);
    ASSERT_TRUE(AwaitModule(kModuleKobd));
    ExpectServing("when the other had left");
}

TEST_F(Bus, ADaemonThatEndsLetsNobodyWaitForItsReply)
{
    std::thread ending(
        []
        {
            usleep(100000);
            MessageDestroy();
        });
    const int64_t start = NowMs();
    EXPECT_EQ(Call(Message(kMute), 10000), 3);
    EXPECT_LT(NowMs() - start, 2000);
    ending.join();
}
}  // namespace kobd::test
