// Whose queues and semaphores are used and removed: of killed clients, of children, of other users.
#include <sys/sem.h>

#include <csignal>

#include "tests/host/bus_fixture.h"
#include "tests/host/in_child.h"

namespace kobd::test
{
namespace
{
// Puts a message into the queue: a reply to the client whose queue is named.
bool Put(int queue, int named)
{
    QueueMessage message;
    message.type = 1;
    BusHeader header{};
    header.reply_queue = named + 1;
    memcpy(message.bytes, &header, sizeof header);
    return msgsnd(queue, &message, sizeof header, 0) == 0;
}

bool Take(int queue)
{
    QueueMessage message;
    return msgrcv(queue, &message, sizeof message.bytes, 0, 0) > 0;
}
}  // namespace

// What was left behind, and whether it is removed. A queue is made under the key of the child that dies then.
TEST_F(BusQueues, OnlyWhatAClientCertainlyLeftIsRemoved)
{
    const struct
    {
        const char* what;
        int mode;
        bool received, replied, strange, goes;
        pid_t beside = 0;  // the key is that of the process with this number more
        uid_t user = geteuid();
        bool given = false;  // to this user
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
        {"another user's client, given to this one", kClientMode, true, false, false, false, 0, kNobody, true},
    };
    for (const auto& one : cases)
    {
        int channel[2];
        ASSERT_EQ(pipe(channel), 0);
        const auto leave = [&]
        {
            const int queue = msgget(ClientKey(getpid() + one.beside, 7), IPC_CREAT | IPC_EXCL | one.mode);
            const bool left = (!one.received || (Put(queue, queue) && Take(queue))) &&
                              (!one.replied || Put(queue, queue)) && (!one.strange || Put(queue, queue + 1));
            if (one.given) GiveQueue(queue, 0);
            return left && write(channel[1], &queue, sizeof queue) > 0 ? 0 : 1;
        };
        const int result = InChild(one.user, leave);
        int queue = -1;
        if (result == 0 && read(channel[0], &queue, sizeof queue) < 0) queue = -1;
        ReclaimQueues();
        EXPECT_TRUE(queue >= 0 || result == kNotThatUser) << one.what;
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

TEST_F(Bus, AChildOpensAConnectionOfItsOwnAndItsWaitsEnd)
{
    const auto use = [this]
    {
        if (Call(Message(kEcho)) != 9 || BusClientReceive(&client_, reply_.Header(), 0) != 9) return 1;
        BusClientClose(&client_);
        if (BusClientOpen(&client_) != 0 || Call(Message(kEcho)) != 0) return 2;
        return BusClientReceive(&client_, reply_.Header(), 50) == 8 ? 0 : 3;
    };
    EXPECT_EQ(BusClientReceive(&client_, reply_.Header(), 1), 8) << "from here on a thread ends the waits";
    EXPECT_EQ(InChild(geteuid(), use), 0) << "the child has none of it";
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
        if (InChild(user, plant) == kNotThatUser) continue;
        BusClient module;
        BusClient second;
        msqid_ds state = {};
        ASSERT_EQ(BusClientJoin(&module, kModuleServices), 0) << user;
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
        EXPECT_EQ(MessageSend(Message(kEcho, "secret", kModuleNotify).Header()), 3) << given;
        EXPECT_EQ(msgctl(msgget(key, 0), IPC_RMID, nullptr), 0);
    }
}

TEST_F(BusQueues, RootAndADaemonOfAnotherUserHearEachOther)
{
    BusClient listener;
    ASSERT_EQ(BusClientJoin(&listener, kModuleNotify), 0) << "before there is a daemon";
    const pid_t child = fork();
    if (child == 0)
    {
        if (setresuid(kNobody, kNobody, kNobody) != 0 || MessageInitialize(kModuleKobd) != 0) _exit(kNotThatUser);
        for (;;) pause();
    }
    if (AwaitModule(kModuleKobd))
    {
        EXPECT_EQ(BusClientReceive(&listener, reply_.Header(), 1), 8) << "it finds the daemon while it waits";
        EXPECT_EQ(Call(Message(kAnnounce, "to root")), 0);
        EXPECT_EQ(reply_.Payload(), "to root");
        EXPECT_EQ(BusClientReceive(&listener, reply_.Header(), 1000), 0);
        const auto sees_it = []
        {
            BusModule look;
            return BusModuleLook(kModuleNotify, &look) == 0 && look.claimed && look.process != 0 ? 0 : 1;
        };
        EXPECT_EQ(InChild(kNobody, sees_it), 0) << "the daemon's user sees that the listener is there";
    }
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    BusClientClose(&listener);
    if (WIFEXITED(status)) GTEST_SKIP() << "no second user here";
    EXPECT_EQ(Join(kModuleKobd), 0) << "what the other user's daemon left";
}
}  // namespace kobd::test
