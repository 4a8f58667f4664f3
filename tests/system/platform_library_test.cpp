// A platform library swapped at load time: it finds the daemon's exported names, and what it supplies is what the
// daemon calls; and ends of the daemon while it goes wrong: always with status 0, and within the time.
#include "daemon/exported_data.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/injected_fault.h"

namespace kobd::test
{
namespace
{
static_assert(sizeof apn_modify == 140 && sizeof aa == 372 && sizeof apn_list == 2800 && sizeof message_buffer == 5196,
              "as code loaded on the router expects them");

void Spawn(DaemonProcess& daemon, const char* hook)
{
    const Preloaded preloaded("tests/libkobd_visitor.so");
    setenv("KOBD_HOOK", hook, 1);
    daemon.Spawn();
    unsetenv("KOBD_HOOK");
}

bool Answers() { return Request(kReqUpdate, {}, 200).bus == 0; }

using PlatformLibrary = SystemTest;
using Signals = SystemTest;

TEST_F(PlatformLibrary, FindsWhatTheDaemonExportsAndTakesThePlaceOfTheHosts)
{
    Spawn(daemon_, "visit");
    ASSERT_TRUE(Await(Answers));
    ASSERT_EQ(SetObject("webHttpPort", "8081"), 0);
    EXPECT_EQ(FileText("/tmp/visit"), "SnapshotGet 0 8081\nvalidIpv4 0 2\nkobd_send_message 0\n");
    EXPECT_TRUE(LogSays("visitor[7]: called from a library"));
    EXPECT_EQ(StateSql(kState, "SELECT * FROM objects"), "webHttpPort|8081\n") << "the host's was called next";
}

TEST_F(Signals, EndTheDaemonWithStatusZeroWhateverAHookDoes)
{
    const struct
    {
        const char* hook;
        int sent;  // 0: none
        int told;  // in the log; 0: it may be missing
        const char* why;
    } kCases[] = {
        {"main", 0, SIGBUS, "a SIGBUS of the main thread"},
        {"thread", 0, SIGBUS, "a SIGBUS of another thread, which the main thread waits for"},
        {"child", SIGTERM, SIGTERM, "a child's SIGBUS ends the child alone, and does not hang it"},
        {"hang", SIGQUIT, SIGQUIT, "a hook that hangs"},
        {"no threads", SIGTERM, 0, "no thread to be had, and the signal meets a lock that the log needs"},
    };
    for (const auto& one : kCases)
    {
        SCOPED_TRACE(one.why);
        Clear();
        Spawn(daemon_, one.hook);
        if (one.sent != 0) Await(Answers, 5);
        usleep(200000);  // into the hook
        const int64_t start = NowMs();
        EXPECT_EQ(daemon_.End(one.sent), 0);
        EXPECT_LT(NowMs() - start, 4000);
        EXPECT_TRUE(one.told == 0 || LogSays("Get sig " + std::to_string(one.told)));
        EXPECT_TRUE(*one.hook != 'c' || FileText("/tmp/visit") == std::to_string(SIGBUS));
    }
}
}  // namespace
}  // namespace kobd::test
