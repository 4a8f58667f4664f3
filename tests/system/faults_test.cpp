// What happens to the real daemon when the system fails it: no queues, a full disk, no memory. Nothing is half
// changed, the log says it, and service resumes.
#include <sys/mount.h>
#include <sys/msg.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <map>

#include "daemon/base/result.h"
#include "dictionary/catalogue/view.h"
#include "host/bus/bus_queues.h"
#include "tests/system/daemon_test.h"
#include "tests/system/injected_fault.h"

namespace kobd::test
{
namespace
{
// A limit on queues in this IPC namespace: "msgmni" how many, "msgmnb" bytes in one that is made,
// "msgmax" bytes of a message, "sem" semaphores. As it was when this goes.
class QueueLimit
{
public:
    explicit QueueLimit(const std::string& name) : path_("/proc/sys/kernel/" + name), before_(FileText(path_)) {}
    ~QueueLimit() { Lift(); }
    QueueLimit(const QueueLimit&) = delete;
    QueueLimit& operator=(const QueueLimit&) = delete;

    bool Set(const std::string& value)
    {
        std::ofstream(path_) << value;
        return FileText(path_) == value + "\n";
    }
    void Lift() { std::ofstream(path_) << before_; }

private:
    std::string path_;
    std::string before_;
};

#define LIMIT_OR_SKIP(limit, value) \
    if (!(limit).Set(value)) GTEST_SKIP() << "queues cannot be limited here"

void RemoveQueue() { msgctl(host::ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr); }

using Faults = SystemTest;

TEST_F(Faults, WithoutAQueueItSaysSoAndServesOnceTheSystemHasOne)
{
    BusClient early;
    ASSERT_EQ(BusClientOpen(&early), 0);
    MessageHeader reply[2];
    MessageHeader request = {};
    request.destination = kModuleKobd;
    request.message_class = kClassRequest;
    request.id = kReqUpdate;
    QueueLimit queues("msgmni");
    for (const bool had_one : {false, true})
    {
        ASSERT_TRUE(!had_one || daemon_.Start());
        unlink(kLog.c_str());
        LIMIT_OR_SKIP(queues, "0");
        RemoveQueue();
        if (!had_one) daemon_.Spawn();
        EXPECT_TRUE(LogSays("cannot have a queue yet: No space left on device"));
        EXPECT_EQ(BusClientCall(&early, &request, reply, 100), 3);
        EXPECT_EQ(Request(kReqUpdate, {}, 100).bus, 9) << "no queue for a client either";
        queues.Lift();
        EXPECT_TRUE(LogSays("serving on a new queue"));
        EXPECT_EQ(BusClientCall(&early, &request, reply, 5000), 0);
        EXPECT_EQ(SetObject("webHttpPort", "8080"), 0);
        LIMIT_OR_SKIP(queues, "0");
        RemoveQueue();
        EXPECT_EQ(daemon_.End(SIGTERM), 0) << "it can be ended while it has none";
        queues.Lift();
    }
    BusClientClose(&early);
}

TEST_F(Faults, WithoutASemaphoreItSaysSoAndServesOnceThereIsOne)
{
    QueueLimit semaphores("sem");
    LIMIT_OR_SKIP(semaphores, "32000\t1024000000\t500\t0");
    semctl(host::ModuleClaim(kModuleKobd), 0, IPC_RMID);  // an earlier daemon's
    daemon_.Spawn();
    EXPECT_TRUE(LogSays("cannot join the bus as module 0x5A510001 yet: no semaphore is left (kernel.sem)"));
    EXPECT_EQ(Request(kReqUpdate, {}, 100).bus, 3);
    semaphores.Lift();
    EXPECT_TRUE(LogSays("joined the bus as module 0x5A510001"));
    EXPECT_EQ(SetObject("webHttpPort", "8086"), 0);
    EXPECT_EQ(daemon_.End(SIGTERM), 0);
}

TEST_F(Faults, AQueueThatIsTooSmallRefusesInTimeAndIsWidenedOnceAllowed)
{
    SKIP_WITHOUT_FAULTS();
    InjectedFault fault;
    ASSERT_TRUE(daemon_.Start());
    QueueLimit room("msgmnb");
    LIMIT_OR_SKIP(room, "60");
    fault.Arm(Call::kSetQueue, "*", EPERM);  // some root may exceed the limit
    RemoveQueue();
    EXPECT_TRUE(LogSays("is too small: Operation not permitted"));
    const int64_t start = NowMs();
    EXPECT_EQ(Request(kReqObjSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "8084"}}, 300).bus, 5);
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
    EXPECT_EQ(Request(kReqObjSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "8084"}}, 300).bus, 5);
    EXPECT_EQ(Request(kReqObjGet, {{kTagObjectName, "webHttpPort"}}, 300).bus, 8) << "only its reply does not fit";
    EXPECT_TRUE(LogSays("to process " + std::to_string(getpid()) + " dropped"));
    largest.Lift();
    EXPECT_EQ(GetObject("webHttpPort"), "80") << "what was refused is not done";
}

TEST_F(Faults, AFullDiskLosesNothingThatWasDurableAndIsCaughtUpWith)
{
    ASSERT_EQ(mkdir(kState.c_str(), 0700), 0);
    ASSERT_EQ(mount("none", kState.c_str(), "tmpfs", 0, "size=256k"), 0);
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(SetObject("webHttpPort", "8081"), 0);
    EXPECT_NE(system("cat /dev/zero > /tmp/state/filler 2>/dev/null"), 0);
    EXPECT_EQ(SetObject("webHttpsPort", "8443"), 0) << "the commit's result is not the set's";
    EXPECT_TRUE(LogSays("cannot write the state in /tmp/state: No space left on device"));
    EXPECT_EQ(GetObject("webHttpsPort"), "8443") << "it serves from memory";
    Restart();
    EXPECT_EQ(GetObject("webHttpPort"), "8081") << "what was durable stays, whole";
    EXPECT_NE(GetObject("webHttpsPort"), "8443");

    ASSERT_EQ(SetObject("webHttpsPort", "8444"), 0);
    ASSERT_EQ(unlink("/tmp/state/filler"), 0);
    EXPECT_EQ(Request(kReqUpdate, {}).result, 0);
    Restart();
    EXPECT_EQ(GetObject("webHttpsPort"), "8444") << "the next commit writes what the failed one could not";
    daemon_.End(SIGTERM);
    umount(kState.c_str());
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
    for (const ObjectRow& object : kObjectRows)
        if (object.access == Access::kReadWrite && object.type == VT_STRING && object.limitation == nullptr &&
            object.validator == nullptr)
            results[object.name] = SetObject(object.name, value);
#ifdef __GLIBC__  // musl has nothing left for a value either
    EXPECT_TRUE(LogSays("update_config[")) << "commits failed as well";
#endif
    ASSERT_EQ(prlimit(daemon_.Process(), RLIMIT_AS, &all, nullptr), 0);
    EXPECT_EQ(Request(kReqUpdate, {}).result, 0);
    Restart();
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
}  // namespace
}  // namespace kobd::test
