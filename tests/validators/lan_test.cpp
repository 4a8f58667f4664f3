// The LAN's addressing through object sets: values of one request are judged together, in any order.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
using Values = std::vector<std::pair<const char*, std::string>>;

constexpr const char* kIp = "networkLanSettingIp";
constexpr const char* kMask = "networkLanSettingMask";
constexpr const char* kStart = "networkLanSettingStart";
constexpr const char* kEnd = "networkLanSettingEnd";

const struct
{
    Values values;
    int code;
    const char* why;
} kCases[] = {
    {{{kIp, "192.168.1.64"}, {kMask, "255.255.255.192"}}, 2, "a network address under the new mask"},
    {{{kMask, "255.255.255.192"}, {kIp, "192.168.1.64"}}, 2, "in either order"},
    {{{kIp, "10.1.2.1"}, {kMask, "255.255.255.0"}, {kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, 0, "a move"},
    {{{kEnd, "10.1.2.20"}, {kStart, "10.1.2.10"}, {kMask, "255.255.255.0"}, {kIp, "10.1.2.1"}}, 0, "any order"},
    {{{kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, 2, "a pool that moves without its LAN"},
    {{{kIp, "10.1.3.1"}, {kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}}, 0, "the last value of an object is the new one"},
};
}  // namespace

TEST(Lan, OneRequestIsJudgedTogether)
{
    NameIndexBuild();
    OutputCapture output;
    for (const auto& c : kCases)
    {
        ResetPlatform();
        platform.values = {{"getLanSetIp_net", "192.168.1.1"},
                           {"getLanSetMask_net", "255.255.255.0"},
                           {"getLanSetStart_net", "192.168.1.100"},
                           {"getLanSetEnd_net", "192.168.1.200"}};
        std::string payload;
        for (const auto& [name, value] : c.values) payload += Pair(name, value);
        EXPECT_EQ(Ask(ReqObjSet, payload).result, c.code) << c.why;
        EXPECT_EQ(platform.Calls("set").size(), c.code == 0 ? c.values.size() : 0u) << c.why << ", all or nothing";
    }
}

TEST(SnapshotRead, NeverPassesItsBuffer)
{
    NameIndexBuild();
    ResetPlatform();
    char value[16];
    platform.values["WebHttpPortGet"] = std::string(15, '1');
    EXPECT_EQ(SnapshotRead("webHttpPort", value), 0);
    EXPECT_EQ(std::string(value), std::string(15, '1')) << "fills the buffer";
    platform.values["WebHttpPortGet"] = std::string(16, '1');
    EXPECT_EQ(SnapshotRead("webHttpPort", value), 11);
    EXPECT_STREQ(value, "") << "no part of a value stands for the value";
    EXPECT_EQ(SnapshotRead("noSuch", value), 1);
    EXPECT_EQ(SnapshotRead("FlowTable", value), 1);
    EXPECT_EQ(SnapshotRead("smsRecord", value), 16);
    platform.failures["WebHttpPortGet"] = 17;
    EXPECT_EQ(SnapshotRead("webHttpPort", std::span(value, 1)), 17) << "room for the zero byte alone";
}
}  // namespace kobd::test
