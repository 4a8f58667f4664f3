// The message bus on real System V queues, in an IPC namespace of this program's own.
#include <gtest/gtest.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <thread>

#include "host/bus/bus.h"
#include "host/bus/bus_queues.h"
#include "host/bus/late_modules.h"
#include "platform/bus_client.h"
#include "tests/joined.h"
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
    QueueMessage raw;
    raw.type = std::numeric_limits<long>::max();  // any type is received
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
        ASSERT_EQ(Join(kModuleKobd), 0);
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

// Runs in a child, as this user, and dies there as one that was killed: nothing is given back.
int InChild(uid_t user, const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0) _exit(user == geteuid() || setresuid(user, user, user) == 0 ? work() : 2);
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr uid_t kNobody = 65534;
// What was left behind, and whether it is removed. A queue is made under the key of the child that dies then.
TEST_F(BusQueues, OnlyWhatAClientCertainlyLeftIsRemoved)
{
    const auto put = [](int queue, int named)  // a reply to the client whose queue is named
    {
        QueueMessage message;
        message.type = 1;
        BusHeader header{};
        header.reply_queue = named + 1;
        memcpy(message.bytes, &header, sizeof header);
        return msgsnd(queue, &message, sizeof header, 0) == 0;
    };
    const struct
    {
        const char* what;
        int mode;
        bool received, replied, strange, goes;
        pid_t beside = 0;  // the key is that of the process with this number more
        uid_t user = geteuid();
    } cases[] = {
        {"a client with a reply", kClientMode, true, true, false, true},
        {"a client killed as it made its queue", kClientMode, false, true, false, true},
        {"a client written by somebody else", kQueueMode, true, false, false, true},
        {"another program's message", kClientMode, true, true, true, false},
        {"another program's queue, never used", kQueueMode, false, false, false, false},
        {"another program's queue, with a message", kQueueMode, false, false, true, false},
        {"another program's mode", 0660, true, false, false, false},
        {"a client of another process namespace", kClientMode, true, false, false, false, 1 << 21},
        {"another user's client", kClientMode, true, false, false, false, 0, kNobody},
    };
    for (const auto& one : cases)
    {
        int channel[2];
        ASSERT_EQ(pipe(channel), 0);
        const auto leave = [&]
        {
            QueueMessage message;
            const int queue = msgget(ClientKey(getpid() + one.beside, 7), IPC_CREAT | IPC_EXCL | one.mode);
            const bool left =
                (!one.received || (put(queue, queue) && msgrcv(queue, &message, sizeof message.bytes, 0, 0) > 0)) &&
                (!one.replied || put(queue, queue)) && (!one.strange || put(queue, queue + 1));
            return left && write(channel[1], &queue, sizeof queue) > 0 ? 0 : 1;
        };
        const int result = InChild(one.user, leave);
        int queue = -1;
        if (result == 0 && read(channel[0], &queue, sizeof queue) < 0) queue = -1;
        ReclaimQueues();
        EXPECT_TRUE(queue >= 0 || result == 2) << one.what;
        EXPECT_EQ(msgctl(queue, IPC_RMID, nullptr) == 0, !one.goes && queue >= 0) << one.what;
        for (const int end : channel) close(end);
    }
}

TEST_F(BusQueues, AKilledListenersQueueGoesAndALivingOnesStays)
{
    BusClient living;
    BusClient killed;
    ASSERT_EQ(BusClientJoin(&living, kModuleServices), 0);
    ASSERT_EQ(InChild(geteuid(), [&] { return BusClientJoin(&killed, kModuleNotify); }), 0);
    EXPECT_GE(ModuleQueue(kModuleNotify, false), 0);
    ReclaimModuleQueues();
    EXPECT_LT(ModuleQueue(kModuleNotify, false), 0);
    EXPECT_EQ(ModuleQueue(kModuleServices, false), living.queue);
    BusClientClose(&living);
}

TEST_F(Bus, AChildOpensAConnectionOfItsOwn)
{
    const auto use = [this]
    {
        Message request(kEcho);
        if (Call(request) != 9 || BusClientReceive(&client_, reply_.Header(), 0) != 9) return 1;
        BusClientClose(&client_);
        return BusClientOpen(&client_) == 0 && Call(request) == 0 ? 0 : 3;
    };
    EXPECT_EQ(InChild(geteuid(), use), 0);
    ExpectServing("the parent's connection");
}

TEST_F(BusQueues, ASemaphoreWithoutAProcessBehindItKeepsNobodyOut)
{
    constexpr key_t key = static_cast<key_t>(kModuleServices);
    const auto plant = []
    {
        sembuf take = {0, 1, 0};
        const int set = semget(key, 1, IPC_CREAT | 0666);
        return msgget(key, IPC_CREAT | 0666) >= 0 && semop(set, &take, 1) == 0 ? 0 : 1;
    };
    for (const uid_t user : {geteuid(), kNobody})
    {
        if (InChild(user, plant) == 2) continue;
        BusClient module;
        BusClient second;
        ASSERT_EQ(BusClientJoin(&module, kModuleServices), 0) << user;
        msqid_ds state = {};
        ASSERT_EQ(msgctl(module.queue, IPC_STAT, &state), 0);
        EXPECT_TRUE(IsOurs(state.msg_perm));
        EXPECT_EQ(BusClientJoin(&second, kModuleServices), 9) << "a living process is behind it";
        BusClientClose(&module);
    }
}

TEST_F(Bus, NothingIsSentWhereAnotherUserListens)
{
    const key_t key = static_cast<key_t>(kModuleNotify);
    for (const uid_t given : {kNobody, geteuid()})
    {
        const auto listen = [&]
        {
            GiveQueue(msgget(key, IPC_CREAT | 0600), given);  // its maker keeps the use of it
            return 0;
        };
        if (InChild(kNobody, listen) != 0) GTEST_SKIP() << "no second user here";
        Message event(kEcho, "secret", kModuleNotify);
        EXPECT_EQ(MessageSend(event.Header()), 3) << given;
        EXPECT_EQ(msgctl(msgget(key, 0), IPC_RMID, nullptr), 0);
    }
}

TEST_F(BusQueues, RootAndADaemonOfAnotherUserHearEachOther)
{
    BusClient listener;
    BusClient client;
    ASSERT_EQ(BusClientJoin(&listener, kModuleNotify), 0) << "before there is a daemon";
    const pid_t child = fork();
    if (child == 0)
    {
        MessageProccessRegister(kTable);
        if (setresuid(kNobody, kNobody, kNobody) != 0 || MessageInitialize(kModuleKobd) != 0) _exit(2);
        for (;;) pause();
    }
    if (AwaitModule(kModuleKobd))
    {
        Message message(0);
        Message request(kAnnounce, "to root");
        EXPECT_EQ(BusClientReceive(&listener, message.Header(), 1), 8) << "it finds the daemon while it waits";
        ASSERT_EQ(BusClientOpen(&client), 0);
        EXPECT_EQ(BusClientCall(&client, request.Header(), message.Header(), 5000), 0);
        EXPECT_EQ(message.Payload(), "to root");
        EXPECT_EQ(BusClientReceive(&listener, message.Header(), 1000), 0);
    }
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    BusClientClose(&client);
    BusClientClose(&listener);
    if (WIFEXITED(status)) GTEST_SKIP() << "no second user here";
    EXPECT_EQ(BusClientJoin(&client, kModuleKobd), 0) << "what the other user's daemon left";
    BusClientClose(&client);
}
}  // namespace kobd::test
