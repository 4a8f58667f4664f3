// What happens to the real daemon when the system fails it: no queues, a full disk, a client whose
// queue takes nothing. Nothing is half changed, the log says it, and service resumes.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <map>

#include "client/dictionary/dictionary.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "host/bus/bus_queues.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"
#include "tests/system/injected_fault.h"

namespace kobd::test
{
namespace
{
constexpr char kState[] = "/tmp/state";
constexpr char kLog[] = "/tmp/kobd.log";

// A limit on queues in this IPC namespace: "msgmni" how many, "msgmnb" bytes in one that is made,
// "msgmax" bytes of a message. As it was when this goes.
class QueueLimit
{
public:
    explicit QueueLimit(const std::string& name) : path_("/proc/sys/kernel/" + name), before_(FileText(path_)) {}
    ~QueueLimit() { Set(before_); }
    QueueLimit(const QueueLimit&) = delete;
    QueueLimit& operator=(const QueueLimit&) = delete;

    bool Set(const std::string& value)
    {
        std::ofstream(path_) << value;
        return FileText(path_) == value + "\n";
    }
    void Lift() { Set(before_); }

private:
    std::string path_;
    std::string before_;
};

#define LIMIT_OR_SKIP(limit, value) \
    if (!(limit).Set(value)) GTEST_SKIP() << "queues cannot be limited here"

bool LogSays(const std::string& text)
{
    for (int look = 0; look < 50; ++look, usleep(100000))
        if (FileText(kLog).find(text) != std::string::npos) return true;
    return false;
}

MessageHeader UpdateRequest()
{
    MessageHeader request = {};
    request.destination = kModuleKobd;
    request.message_class = kClassRequest;
    request.id = kUpdate;
    return request;
}

int EndOf(pid_t daemon)
{
    int status = -1;
    kill(daemon, SIGTERM);
    waitpid(daemon, &status, 0);
    return status;
}

class Faults : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*; mkdir /tmp/state"), 0);
    }

    pid_t SpawnWithoutQueue()
    {
        unlink(kLog);
        const pid_t daemon = daemon_.Spawn();
        EXPECT_TRUE(LogSays("cannot have a queue yet: No space left on device")) << FileText(kLog);
        return daemon;
    }

    DaemonProcess daemon_{kState};
};

TEST_F(Faults, ARemovedQueueIsTakenAgainOnceTheSystemHasOne)
{
    ASSERT_TRUE(daemon_.Start());
    QueueLimit queues("msgmni");
    LIMIT_OR_SKIP(queues, "0");
    ASSERT_EQ(msgctl(host::ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr), 0);
    EXPECT_TRUE(LogSays("cannot have a queue yet")) << FileText(kLog);
    queues.Lift();
    EXPECT_TRUE(LogSays("serving on a new queue"));
    EXPECT_EQ(SetObject("webHttpPort", "8080"), 0);
    EXPECT_EQ(GetObject("webHttpPort"), "8080");
}

TEST_F(Faults, ADaemonThatStartsWithoutAQueueServesOnceTheSystemHasOne)
{
    BusClient early;
    ASSERT_EQ(BusClientOpen(&early), 0);
    QueueLimit queues("msgmni");
    LIMIT_OR_SKIP(queues, "0");
    msgctl(host::ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr);  // an earlier daemon's
    EXPECT_EQ(EndOf(SpawnWithoutQueue()), 0) << "it can be ended while it has none";
    const pid_t daemon = SpawnWithoutQueue();
    alignas(MessageHeader) char reply[kMessageMax];
    MessageHeader request = UpdateRequest();
    EXPECT_EQ(BusClientCall(&early, &request, reinterpret_cast<MessageHeader*>(reply), 300), 3);
    EXPECT_EQ(Request(kUpdate, {}, 300).bus, 9) << "no queue for a client either";
    queues.Lift();
    EXPECT_TRUE(LogSays("serving on a new queue")) << FileText(kLog);
    EXPECT_EQ(BusClientCall(&early, &request, reinterpret_cast<MessageHeader*>(reply), 5000), 0);
    EXPECT_EQ(SetObject("webHttpPort", "8083"), 0);
    BusClientClose(&early);
    EXPECT_EQ(EndOf(daemon), 0);
}

TEST_F(Faults, WithoutASemaphoreItSaysSoAndServesOnceThereIsOne)
{
    QueueLimit semaphores("sem");
    LIMIT_OR_SKIP(semaphores, "32000\t1024000000\t500\t0");
    semctl(host::ModuleClaim(kModuleKobd), 0, IPC_RMID);  // an earlier daemon's
    const pid_t daemon = daemon_.Spawn();
    EXPECT_TRUE(LogSays("cannot join the bus as module 0x5A510001 yet: no semaphore is left (kernel.sem)"));
    EXPECT_EQ(Request(kUpdate, {}, 300).bus, 3);
    semaphores.Lift();
    EXPECT_TRUE(LogSays("joined the bus as module 0x5A510001"));
    EXPECT_EQ(SetObject("webHttpPort", "8086"), 0);
    EXPECT_EQ(EndOf(daemon), 0);
}

TEST_F(Faults, AQueueThatIsTooSmallRefusesInTimeAndIsWidenedOnceAllowed)
{
    SKIP_WITHOUT_FAULTS();
    InjectedFault fault;
    ASSERT_TRUE(daemon_.Start());
    QueueLimit room("msgmnb");
    LIMIT_OR_SKIP(room, "60");
    fault.Arm(Call::kSetQueue, "*", EPERM);  // some root may exceed the limit
    ASSERT_EQ(msgctl(host::ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr), 0);
    EXPECT_TRUE(LogSays("is too small: Operation not permitted")) << FileText(kLog);
    const int64_t start = NowMs();
    EXPECT_EQ(Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "8084"}}, 300).bus, 5);
    EXPECT_LT(NowMs() - start, 2000);
    room.Lift();
    fault.Disarm();
    EXPECT_EQ(SetObject("webHttpPort", "8085"), 0) << "within its five seconds";
    EXPECT_EQ(GetObject("webHttpPort"), "8085");
}

TEST_F(Faults, AMessageLargerThanTheKernelTakesIsNotADaemonThatIsGone)
{
    ASSERT_TRUE(daemon_.Start());
    QueueLimit largest("msgmax");
    LIMIT_OR_SKIP(largest, "60");
    EXPECT_EQ(Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "8084"}}, 300).bus, 5);
    EXPECT_EQ(Request(kGet, {{kTagObjectName, "webHttpPort"}}, 300).bus, 8) << "the request fits, its reply does not";
    EXPECT_TRUE(LogSays("to process " + std::to_string(getpid()) + " dropped")) << FileText(kLog);
    largest.Lift();
    EXPECT_NE(GetObject("webHttpPort"), "8084") << "what was refused is not done";
    EXPECT_EQ(SetObject("webHttpPort", "8084"), 0);
}

TEST_F(Faults, AStoppedDaemonRefusesInTimeAndServesWhatItsQueueHeld)
{
    ASSERT_TRUE(daemon_.Start());
    BusClient client;
    ASSERT_EQ(BusClientOpen(&client), 0);
    kill(daemon_.Process(), SIGSTOP);
    ASSERT_EQ(waitpid(daemon_.Process(), nullptr, WUNTRACED), daemon_.Process());
    struct
    {
        MessageHeader header;
        char payload[100];  // so that the replies are less than the requests and find room
    } request = {UpdateRequest(), {}};
    request.header.length = sizeof request.payload;
    int sent = 0;
    while (BusClientSend(&client, &request.header, 0) == 0) ++sent;
    const int64_t start = NowMs();
    EXPECT_EQ(BusClientSend(&client, &request.header, 300), 5);
    EXPECT_GE(NowMs() - start, 300);
    EXPECT_LT(NowMs() - start, 2000);
    kill(daemon_.Process(), SIGCONT);
    alignas(MessageHeader) char reply[kMessageMax];
    for (int answered = 0; answered < sent; ++answered)
        ASSERT_EQ(BusClientReceive(&client, reinterpret_cast<MessageHeader*>(reply), 2000), 0)
            << answered << " of " << sent;
    BusClientClose(&client);
    EXPECT_EQ(SetObject("webHttpPort", "8085"), 0);
}

TEST_F(Faults, AFullDiskLosesNothingThatWasDurableAndIsCaughtUpWith)
{
    ASSERT_EQ(mount("none", kState, "tmpfs", 0, "size=256k"), 0);
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(SetObject("webHttpPort", "8081"), 0);
    EXPECT_NE(system("cat /dev/zero > /tmp/state/filler 2>/dev/null"), 0);
    EXPECT_EQ(SetObject("webHttpsPort", "8443"), 0) << "the commit's result is not the set's";
    EXPECT_TRUE(LogSays("cannot write the state in /tmp/state: No space left on device"));
    EXPECT_EQ(GetObject("webHttpsPort"), "8443") << "it serves from memory";
    daemon_.End(SIGKILL);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(GetObject("webHttpPort"), "8081") << "what was durable stays, whole";
    EXPECT_NE(GetObject("webHttpsPort"), "8443");

    ASSERT_EQ(SetObject("webHttpsPort", "8444"), 0);
    ASSERT_EQ(unlink("/tmp/state/filler"), 0);
    EXPECT_EQ(Request(kUpdate, {}).result, 0);
    daemon_.End(SIGKILL);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(GetObject("webHttpsPort"), "8444") << "the next commit writes what the failed one could not";
    daemon_.End(SIGTERM);
    umount(kState);
}

TEST_F(Faults, ADaemonWithoutMemoryRefusesAndLosesNothing)
{
    if (*KOBD_EMULATOR != 0) GTEST_SKIP() << "the emulator would run out of memory, not the daemon";
    setenv("MALLOC_ARENA_MAX", "1", 1);  // one heap, which the limit bounds
    ASSERT_TRUE(daemon_.Start());
    unsetenv("MALLOC_ARENA_MAX");
    const rlim_t pages = std::stoull(FileText("/proc/" + std::to_string(daemon_.Process()) + "/statm"));
    const rlim_t bytes = pages * static_cast<rlim_t>(getpagesize());
    if (bytes >> 40 != 0) GTEST_SKIP() << "the memory of a sanitizer has no bound";
    const rlimit none_left = {bytes, RLIM_INFINITY};
    const rlimit all = {RLIM_INFINITY, RLIM_INFINITY};
    ASSERT_EQ(prlimit(daemon_.Process(), RLIMIT_AS, &none_left, nullptr), 0);
    const std::string value(500, 'v');
    std::map<std::string, int> results;
    for (const client::ObjectEntry& object : kObjectRows)
        if (object.access == Access::kReadWrite && object.type == VT_STRING && object.limitation == nullptr &&
            object.validator == nullptr)
            results[object.name] = SetObject(object.name, value);
#ifdef __GLIBC__  // musl has nothing left for a value either
    EXPECT_TRUE(LogSays("update_config[")) << "commits failed as well";
#endif
    ASSERT_EQ(prlimit(daemon_.Process(), RLIMIT_AS, &all, nullptr), 0);
    EXPECT_EQ(Request(kUpdate, {}).result, 0);
    daemon_.End(SIGKILL);
    ASSERT_TRUE(daemon_.Start());
    int refused = 0;
    for (const auto& [name, result] : results)
    {
        // The daemon itself has no memory, or its platform has none.
        EXPECT_TRUE(result == 0 || result == kMallocFailed || result == 17) << name << " " << result;
        EXPECT_EQ(GetObject(name) == value, result == 0) << name;
        refused += result != 0;
    }
    EXPECT_GT(refused, 0);
}

TEST_F(Faults, AReplyThatItsClientCannotTakeIsDroppedAndTold)
{
    ASSERT_TRUE(daemon_.Start());
    BusClient client;
    ASSERT_EQ(BusClientOpen(&client), 0);
    msqid_ds status;
    ASSERT_EQ(msgctl(client.queue, IPC_STAT, &status), 0);
    status.msg_qbytes = 16;  // less than a header
    ASSERT_EQ(msgctl(client.queue, IPC_SET, &status), 0);
    alignas(MessageHeader) char reply[kMessageMax];
    MessageHeader request = UpdateRequest();
    EXPECT_EQ(BusClientCall(&client, &request, reinterpret_cast<MessageHeader*>(reply), 1000), 8);
    BusClientClose(&client);
    EXPECT_TRUE(LogSays("to process " + std::to_string(getpid()) + " dropped"));
    EXPECT_EQ(SetObject("webHttpPort", "8082"), 0) << "others are served";
}
}  // namespace
}  // namespace kobd::test
