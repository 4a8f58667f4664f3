// The message bus on real System V queues, in an IPC namespace of this program's own.
#include <gtest/gtest.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <string>

#include "daemon/base/messages.h"
#include "host/bus/bus_queues.h"
#include "platform/bus_client.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
constexpr uint16_t kEcho = 1;
constexpr uint16_t kMute = 2;      // answers nothing
constexpr uint16_t kAnnounce = 3;  // sends ten notifications, then answers
constexpr int kAnnouncements = 10;

std::atomic<int> handled = 0;
std::atomic<int> last_length = -1;
std::atomic<int> reply_code = -1;

int Echo(MessageHeader* message)
{
    ++handled;
    last_length = message->length;
    return reply_code = MessageSendReply(message);
}

int Mute(MessageHeader*)
{
    ++handled;
    return 0;
}

int Announce(MessageHeader* message)
{
    MessageHeader event{};
    event.destination = kModuleNotify;
    event.message_class = kClassEvent;
    for (int number = 0; number < kAnnouncements; ++number) static_cast<void>(MessageSend(&event));
    return Echo(message);
}

constexpr uint32_t Code(uint16_t id) { return uint32_t{id} << 16 | kClassRequest; }
const MsgHandler kTable[] = {{"Echo", Code(kEcho), Echo},
                             {"Mute", Code(kMute), Mute},
                             {"Announce", Code(kAnnounce), Announce},
                             {nullptr, 0, nullptr}};

struct Message
{
    Message(uint16_t id, const std::string& payload = "", uint32_t module = kModuleKobd)
    {
        Header()->destination = module;
        Header()->message_class = kClassRequest;
        Header()->id = id;
        Header()->length = static_cast<uint16_t>(payload.size());
        memcpy(bytes + sizeof(MessageHeader), payload.data(), payload.size());
    }
    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes); }
    std::string Payload() { return {bytes + sizeof(MessageHeader), Header()->length}; }

    alignas(MessageHeader) char bytes[kMessageMax] = {};
};

// Puts `size` bytes into the daemon's queue as a client in another language might.
int SendRaw(Message& message, size_t size, int64_t reply_queue)
{
    BusHeader header = LoadBusHeader(message.Header());
    header.reply_queue = static_cast<int32_t>(reply_queue + 1);
    StoreBusHeader(message.Header(), header);
    struct
    {
        long type;
        char bytes[kMessageMax];
    } raw;
    raw.type = 1;
    memcpy(raw.bytes, message.bytes, sizeof raw.bytes);
    return msgsnd(ModuleQueue(kModuleKobd, false), &raw, size, 0);
}

class BusQueues : public testing::Test
{
protected:
    void SetUp() override { SKIP_WITHOUT_NAMESPACES(); }
};

class Bus : public BusQueues
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        handled = 0;
        last_length = reply_code = -1;
        MessageProccessRegister(kTable);
        ASSERT_EQ(MessageInitialize(kModuleKobd), 0);
        ASSERT_EQ(BusClientOpen(&client_), 0);
    }
    void TearDown() override
    {
        if (!own_namespaces) return;
        BusClientClose(&client_);
        MessageDestroy();
    }

    int Call(Message& request, int timeout_ms = 5000)
    {
        return BusClientCall(&client_, request.Header(), reply_.Header(), timeout_ms);
    }
    void ExpectServing(const char* why)
    {
        Message request(kEcho, "still there");
        EXPECT_EQ(Call(request), 0) << why;
        EXPECT_EQ(reply_.Payload(), "still there") << why;
    }

    BusClient client_;
    Message reply_{0};
};
}  // namespace

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
    EXPECT_EQ(MessageInitialize(kModuleKobd), 0) << "given back";
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

TEST_F(Bus, LengthBeyondWhatArrivedIsRefusedBeforeTheHandler)
{
    Message lying(kEcho, "1234");
    lying.Header()->length = 5;
    ASSERT_EQ(SendRaw(lying, sizeof(MessageHeader) + 4, client_.queue), 0);
    ASSERT_EQ(BusClientReceive(&client_, reply_.Header(), 5000), 0);
    EXPECT_EQ(reply_.Payload(), std::string("\0\0\4\0\2\0\0\0", 8)) << "result 2";
    EXPECT_EQ(handled, 0);

    Message most(kEcho, "1234");
    most.Header()->length = UINT16_MAX;
    ASSERT_EQ(SendRaw(most, sizeof(MessageHeader), client_.queue), 0);
    ASSERT_EQ(BusClientReceive(&client_, reply_.Header(), 5000), 0);
    EXPECT_EQ(handled, 0);
}

TEST_F(Bus, BytesBehindThePayloadAreNoneOfTheHandlers)
{
    Message request(kEcho, "12");
    ASSERT_EQ(SendRaw(request, sizeof(MessageHeader) + 100, client_.queue), 0);
    ASSERT_EQ(BusClientReceive(&client_, reply_.Header(), 5000), 0);
    EXPECT_EQ(reply_.Payload(), "12");
}

TEST_F(Bus, ScrapsAreIgnored)
{
    for (const size_t size : {size_t{0}, size_t{1}, sizeof(MessageHeader) - 1})
    {
        Message scrap(kEcho);
        ASSERT_EQ(SendRaw(scrap, size, client_.queue), 0);
    }
    ExpectServing("after messages shorter than a header");
    EXPECT_EQ(handled, 1);
}

TEST_F(Bus, ReplyNeverGoesIntoTheDaemonsOwnQueue)
{
    Message loop(kEcho, "again");
    ASSERT_EQ(SendRaw(loop, sizeof(MessageHeader) + 5, ModuleQueue(kModuleKobd, false)), 0);
    Message sync(kMute);
    EXPECT_EQ(Call(sync, 200), 8);
    EXPECT_EQ(handled, 2) << "the loop request once, the mute one once";
    EXPECT_EQ(reply_code, 5);
    ExpectServing("after a request that names the daemon's own queue");
}

TEST_F(Bus, AnyNumberOfAReplyQueueIsSurvived)
{
    for (const int64_t queue : {int64_t{INT32_MIN} - 1, int64_t{INT32_MIN}, int64_t{-2}, int64_t{INT32_MAX} - 1})
    {
        handled = 0;
        Message request(kEcho, "nobody");
        ASSERT_EQ(SendRaw(request, sizeof(MessageHeader) + 6, queue), 0);
        Message sync(kMute);
        EXPECT_EQ(Call(sync, 50), 8) << queue;
        EXPECT_EQ(handled, 2) << queue;
        EXPECT_EQ(reply_code, 5) << queue;
    }
    ExpectServing("after requests that name no queue");
}

TEST_F(Bus, FullQueueOfAModuleCostsOneBoundUntilItReads)
{
    BusClient stuck;
    ASSERT_EQ(BusClientJoin(&stuck, kModuleNotify), 0);
    Message filler(kEcho, std::string(1000, 'f'), kModuleNotify);
    while (BusClientSend(&client_, filler.Header(), 0) == 0) continue;
    Message small(kEcho, "", kModuleNotify);
    while (BusClientSend(&client_, small.Header(), 0) == 0) continue;

    Message request(kAnnounce);
    const int64_t start = NowMs();
    EXPECT_EQ(Call(request), 0) << "the reply comes all the same";
    const int64_t spent = NowMs() - start;
    EXPECT_GE(spent, 90) << "a short wait for room";
    EXPECT_LT(spent, 400) << "ten notifications share 100 ms, they do not have them each";

    const int64_t again = NowMs();
    EXPECT_EQ(Call(request), 0);
    EXPECT_LT(NowMs() - again, 90) << "known to be stuck, it is waited for no more";

    while (BusClientReceive(&stuck, reply_.Header(), 0) == 0) continue;
    EXPECT_EQ(Call(request), 0);
    for (int number = 0; number < kAnnouncements; ++number)
        EXPECT_EQ(BusClientReceive(&stuck, reply_.Header(), 1000), 0)
            << "it reads again and misses nothing: " << number;

    while (BusClientSend(&client_, small.Header(), 0) == 0) continue;
    const int64_t full_again = NowMs();
    EXPECT_EQ(Call(request), 0);
    EXPECT_GE(NowMs() - full_again, 90) << "full anew, it is given time anew";

    BusClientClose(&stuck);
    const int64_t free_start = NowMs();
    EXPECT_EQ(Call(request), 0);
    EXPECT_LT(NowMs() - free_start, 90) << "a missing module costs nothing";
}

TEST_F(Bus, QueueRemovedFromOutsideIsTakenAnew)
{
    ExpectServing("before");
    ASSERT_EQ(msgctl(ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr), 0);
    for (int look = 0; look < 500 && ModuleQueue(kModuleKobd, false) < 0; ++look) usleep(10000);
    ExpectServing("after");
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

TEST_F(BusQueues, ModuleOfAKilledProcessIsFreeAndItsClientQueueGoes)
{
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        BusClient module;
        BusClient client;
        int queue = -1;
        if (BusClientJoin(&module, kModuleServices) == 0 && BusClientOpen(&client) == 0) queue = client.queue;
        if (write(channel[1], &queue, sizeof queue) < 0) _exit(1);
        for (;;) pause();
    }
    int queue = -1;
    ASSERT_EQ(read(channel[0], &queue, sizeof queue), static_cast<ssize_t>(sizeof queue));
    ASSERT_GE(queue, 0);
    msqid_ds status;
    ReclaimQueues();
    EXPECT_EQ(msgctl(queue, IPC_STAT, &status), 0) << "a living client's queue stays";
    EXPECT_TRUE(ClaimHolds(ModuleClaim(kModuleServices)));
    BusClient other;
    EXPECT_EQ(BusClientJoin(&other, kModuleServices), 9);

    ASSERT_EQ(kill(child, SIGKILL), 0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_FALSE(ClaimHolds(ModuleClaim(kModuleServices)));
    ReclaimQueues();
    EXPECT_NE(msgctl(queue, IPC_STAT, &status), 0) << "a killed client's queue is removed";
    EXPECT_EQ(BusClientJoin(&other, kModuleServices), 0);
    BusClientClose(&other);
    close(channel[0]);
    close(channel[1]);
}

TEST_F(BusQueues, AnotherUserWhoCameFirstHearsNothing)
{
    constexpr uid_t kNobody = 65534;
    constexpr int kForAll = 0666;
    const key_t key = static_cast<key_t>(kModuleServices);
    for (const bool holds : {false, true})
    {
        const pid_t child = fork();
        if (child == 0)
        {
            if (setresuid(kNobody, kNobody, kNobody) != 0) _exit(2);
            const int set = semget(key, 1, IPC_CREAT | kForAll);
            sembuf take = {0, 1, 0};
            _exit(set >= 0 && msgget(key, IPC_CREAT | kForAll) >= 0 && (!holds || semop(set, &take, 1) == 0) ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "no second user here";
        ASSERT_EQ(status, 0);
        BusClient module;
        EXPECT_EQ(BusClientJoin(&module, kModuleServices), holds ? 9 : 0);
        msqid_ds state = {};
        if (holds) continue;
        ASSERT_EQ(msgctl(module.queue, IPC_STAT, &state), 0);
        EXPECT_EQ(state.msg_perm.mode & 0777, 0600);
        EXPECT_EQ(state.msg_perm.cuid, geteuid());
        BusClientClose(&module);
    }
    semctl(ModuleClaim(kModuleServices), 0, IPC_RMID);
    msgctl(ModuleQueue(kModuleServices, false), IPC_RMID, nullptr);
}
}  // namespace kobd::test
