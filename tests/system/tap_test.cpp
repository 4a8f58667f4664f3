// Taps through the client library: what a client sees of the others, what it misses, and how a tap ends.
#include <sys/shm.h>

#include "client/library/kobd_client.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class Tap : public DaemonTest
{
protected:
    void SetUp() override
    {
        DaemonTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_EQ(kobd_client_open(&client_), KOBD_SUCCESS);
        ASSERT_EQ(kobd_tap_open(client_, &tap_), KOBD_SUCCESS);
    }
    void TearDown() override
    {
        kobd_tap_close(tap_);
        kobd_client_close(client_);
    }

    // Asks that often; every answer must be the same.
    void Get(uint32_t times)
    {
        char value[KOBD_VALUE_MAX];
        for (uint32_t time = 0; time < times; ++time) ASSERT_EQ(kobd_get(client_, "IMEI", value, sizeof value), 0);
    }

    kobd_client* client_ = nullptr;
    kobd_tap* tap_ = nullptr;
    kobd_tapped tapped_ = {};
};

TEST_F(Tap, ShowsARequestAndItsAnswer)
{
    Get(1);
    ASSERT_EQ(kobd_tap_next(tap_, 1000, &tapped_), KOBD_SUCCESS);
    EXPECT_EQ(tapped_.kind, KOBD_TAP_RECEIVED);
    EXPECT_EQ(tapped_.id, KOBD_GET);
    EXPECT_EQ(tapped_.process, static_cast<uint32_t>(getpid()));
    EXPECT_EQ(tapped_.program + std::string("\n"), FileText("/proc/self/comm"));
    ASSERT_EQ(kobd_tap_next(tap_, 1000, &tapped_), KOBD_SUCCESS);
    EXPECT_EQ(tapped_.kind, KOBD_TAP_ANSWERED);
    EXPECT_GT(tapped_.took_ns, 0u);
    kobd_item item{};
    for (int read = 0; read < 3; ++read) ASSERT_EQ(kobd_bytes_next(&tapped_.payload, &item), 1) << "code, name, value";
    EXPECT_STREQ(item.text, "001010123456780");
    EXPECT_EQ(kobd_tap_next(tap_, 0, &tapped_), KOBD_TIMEOUT);
}

// After more than its memory holds it goes on with what comes next, and the numbers tell what was lost.
TEST_F(Tap, CountsWhatItMissed)
{
    constexpr uint32_t kGets = 6000;
    Get(kGets);
    EXPECT_EQ(kobd_tap_next(tap_, 0, &tapped_), KOBD_TIMEOUT);
    Get(1);
    ASSERT_EQ(kobd_tap_next(tap_, 1000, &tapped_), KOBD_SUCCESS);
    EXPECT_EQ(tapped_.missed, 2 * kGets) << "requests and answers";
    ASSERT_EQ(kobd_tap_next(tap_, 1000, &tapped_), KOBD_SUCCESS);
    EXPECT_EQ(tapped_.missed, 0u);
}

TEST_F(Tap, EndsWithItsDaemonAndLeavesNothing)
{
    daemon_.End(SIGKILL);
    EXPECT_EQ(kobd_tap_next(tap_, 1000, &tapped_), KOBD_NOT_RUNNING);
    kobd_tap_close(tap_);
    tap_ = nullptr;
    EXPECT_EQ(RunShell("wc -l </proc/sysvipc/shm").output, "1\n") << "the heading";
}

// Memory that is not what a client of ours makes is refused, and the daemon serves on.
TEST_F(Tap, RefusesMemoryThatDoesNotFit)
{
    const auto ask = [&](int32_t memory)
    {
        kobd_items* items = kobd_items_new();
        kobd_items_add_number(items, KOBD_TAG_VALUE, memory);
        const int code = kobd_host_call(client_, static_cast<kobd_host_control>(12), items);
        kobd_items_free(items);
        return code;
    };
    EXPECT_EQ(ask(-1), KOBD_INVALID);
    EXPECT_EQ(ask(1 << 30), KOBD_INVALID);
    for (const size_t size : {size_t{64}, size_t{4096}, size_t{64 + 65535}, size_t{65536}})
    {
        const int memory = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
        EXPECT_EQ(ask(memory), KOBD_INVALID) << size;
        shmctl(memory, IPC_RMID, nullptr);
    }
    Get(1);
}

TEST_F(Tap, OneCannotBeHadBeyondTheSixtyFourth)
{
    std::vector<kobd_tap*> taps(63);
    for (kobd_tap*& tap : taps) ASSERT_EQ(kobd_tap_open(client_, &tap), KOBD_SUCCESS);
    kobd_tap* one_more = nullptr;
    EXPECT_EQ(kobd_tap_open(client_, &one_more), 15);
    for (kobd_tap* tap : taps) kobd_tap_close(tap);
    EXPECT_EQ(kobd_tap_open(client_, &one_more), KOBD_SUCCESS) << "closed ones make room at once";
    kobd_tap_close(one_more);
}

TEST_F(Tap, TsharkReadsWhatAMonitorCaptured)
{
    if (RunShell("command -v tshark").status != 0) GTEST_SKIP() << "tshark is not installed";
    const std::string kCapture =
        "kobctl monitor --count 2 --pcap /tmp/seen.pcap IMEI >/tmp/seen &"
        " until awk '$7 == 2 {++n} END {exit n != 2}' /proc/sysvipc/shm; do :; done;"
        " kobctl get IMEI; kobctl set webHttpPort=81; kobctl get IMEI; wait;";
    const Ran ran = RunShell(kCapture + " tshark -X lua_script:" + SourceFolder() +
                             "docs/kobd.lua -r /tmp/seen.pcap -T fields -e _ws.col.Info 2>/dev/null");
    EXPECT_NE(ran.output.find("received ReqObjGet IMEI\n"), std::string::npos) << ran.output;
    EXPECT_NE(ran.output.find("answered ReqObjGet 0 IMEI 001010123456780\n"), std::string::npos);
    EXPECT_NE(ran.output.find("sent object changed webHttpPort\n"), std::string::npos);
}
}  // namespace
}  // namespace kobd::test
