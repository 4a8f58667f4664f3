// The LAN's addressing and the gateways, through object sets: what one request says together is
// judged together, and against what is stored otherwise.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"
#include "tests/validators/judge.h"
#include "validators/lan.h"
#include "validators/wan.h"

namespace kobd::test
{
namespace
{
using Values = std::vector<std::pair<const char*, std::string>>;

const char* const kIp = "networkLanSettingIp";
const char* const kMask = "networkLanSettingMask";
const char* const kStart = "networkLanSettingStart";
const char* const kEnd = "networkLanSettingEnd";
const char* const kExtern = "networkLanSettingExternIp";
const char* const kWanGateway = "networkWanSettingsGateway";
const char* const kRoute = "lteDefaultGateway";

class Lan : public testing::Test
{
protected:
    void SetUp() override
    {
        NameIndexBuild();
        Factory();
    }

    static void Factory()
    {
        ResetPlatform();
        platform.values = {{"getLanSetIp_net", "192.168.1.1"},
                           {"getLanSetMask_net", "255.255.255.0"},
                           {"getLanSetStart_net", "192.168.1.100"},
                           {"getLanSetEnd_net", "192.168.1.200"},
                           {"getWanSetCount_net", "3"}};
        platform.nvram = {{"apn1_enable", "1"}, {"apn2_enable", "0"}, {"apn3_enable", "1"}, {"apn4_enable", "1"}};
    }

    static int Set(const Values& values)
    {
        std::string payload;
        for (const auto& [name, value] : values) payload += Pair(name, value);
        const int result = Ask(ReqObjSet, payload).result;
        EXPECT_EQ(platform.Calls("set").size(), result == 0 ? values.size() : 0u) << "all or nothing";
        return result;
    }

    OutputCapture output_;
};

// Values of one object, alone in their requests.
const struct
{
    const char* object;
    int code;
    const char* why;
    std::vector<std::string> values;
} kAlone[] = {
    {kIp, kTakes, "another address of the segment, the broadcast address too", {"192.168.1.2", "192.168.1.255"}},
    {kIp, kTakes, "another segment", {"10.0.0.1", "10.254.253.1"}},
    {kIp, kTakes, "no network address under the stored mask", {"192.168.1.64"}},
    {kIp, kRefuses, "the network address, the router's own segment", {"192.168.1.0", "10.254.254.1"}},
    {kIp, kRefuses, "no IPv4 address", {"127.0.0.1"}},
    {kStart, kTakes, "up to the end, the router's own address too", {"192.168.1.2", "192.168.1.1", "192.168.1.200"}},
    {kStart, kRefuses, "above the end, the network address", {"192.168.1.201", "192.168.1.0"}},
    {kStart, kRefuses, "another segment", {"192.168.2.10", "192.169.1.10", "191.168.1.10"}},
    {kStart, kRefuses, "no address", {"192.168.1"}},
    {kEnd, kTakes, "down to the start", {"192.168.1.254", "192.168.1.100"}},
    {kEnd, kRefuses, "the broadcast address, below the start", {"192.168.1.255", "192.168.1.99", "192.168.1.10"}},
    {kEnd, kRefuses, "another segment", {"192.168.2.254"}},
    {kMask, kTakes, "a mask alone is not held against the pool", {"255.255.255.192"}},
    {kExtern, kTakes, "not the LAN's address", {"192.168.1.2"}},
    {kExtern, kRefuses, "the LAN's address, none", {"192.168.1.1", "0.0.0.0"}},
    {kWanGateway, kTakes, "a host of the LAN", {"192.168.1.254"}},
    {kWanGateway, kRefuses, "the router itself, broadcast, network", {"192.168.1.1", "192.168.1.255", "192.168.1.0"}},
    {kWanGateway, kRefuses, "outside the LAN, no address", {"10.0.0.1", "gateway"}},
    {kRoute, kTakes, "a profile that is enabled", {"1", "3", "003"}},
    {kRoute, kRefuses, "one that is not", {"2"}},
    {kRoute, kRefuses, "no profile", {"4", "0", "-1", "4294967297"}},
    {kRoute, kRefuses, "no number", {"", "1 ", "1a"}},
};

const struct
{
    Values values;
    int code;
    const char* why;
} kTogether[] = {
    {{{kIp, "192.168.1.64"}, {kMask, "255.255.255.192"}}, kRefuses, "a network address under the new mask"},
    {{{kMask, "255.255.255.192"}, {kIp, "192.168.1.64"}}, kRefuses, "in either order"},
    {{{kIp, "192.168.1.65"}, {kMask, "255.255.255.192"}}, kTakes, "one above"},
    {{{kIp, "192.168.1.1"}, {kMask, "255.0.0.0"}}, kRefuses, "a mask no LAN can have"},
    {{{kIp, "192.168.1.1"}, {kMask, std::string(512, '2')}}, kRefuses, "a mask longer than any buffer"},
    {{{kMask, std::string(400, '2') + ".1.1.1"}, {kIp, "192.168.1.1"}}, kRefuses, "the same in front"},
    {{{kStart, "192.168.1.2"}, {kEnd, "192.168.1.10"}}, kTakes, "both moved below the stored start"},
    {{{kStart, "192.168.1.255"}, {kEnd, "192.168.1.255"}}, kRefuses, "both the broadcast address"},
    {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.62"}, {kEnd, "192.168.1.62"}}, kTakes, "last of a quarter"},
    {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.63"}, {kEnd, "192.168.1.63"}}, kRefuses, "its broadcast"},
    {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.65"}, {kEnd, "192.168.1.70"}}, kRefuses, "its neighbour"},
    {{{kIp, "10.1.2.1"}, {kMask, "255.255.255.0"}, {kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, kTakes, "a move"},
    {{{kEnd, "10.1.2.20"}, {kStart, "10.1.2.10"}, {kMask, "255.255.255.0"}, {kIp, "10.1.2.1"}}, kTakes, "any order"},
    {{{kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}}, kTakes, "the last part alone is held against the stored end"},
    {{{kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, kRefuses, "a pool that moves without its LAN"},
    {{{kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}, {kEnd, "192.168.1.20"}}, kRefuses, "an end left behind"},
    {{{kIp, "10.1.2.1"}, {kIp, "10.1.3.1"}, {kStart, "10.1.2.10"}}, kRefuses, "the last value given counts"},
    {{{kIp, "10.1.3.1"}, {kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}}, kTakes, "the last value given counts"},
    {{{kExtern, "192.168.1.1"}, {kIp, "192.168.1.2"}}, kTakes, "no longer the LAN's address"},
    {{{kExtern, "192.168.1.2"}, {kIp, "192.168.1.2"}}, kRefuses, "the LAN's new address"},
    {{{kWanGateway, "10.0.0.2"}, {kIp, "10.0.0.1"}}, kTakes, "inside the new LAN"},
    {{{kWanGateway, "192.168.1.254"}, {kIp, "192.168.1.254"}}, kRefuses, "the router's new address"},
};
}  // namespace

TEST_F(Lan, OneRequestIsJudgedTogether)
{
    for (const auto& c : kAlone)
        for (const std::string& value : c.values)
        {
            Factory();
            EXPECT_EQ(Set({{c.object, value}}), c.code) << c.object << "=" << value << ": " << c.why;
        }
    for (const auto& c : kTogether)
    {
        Factory();
        EXPECT_EQ(Set(c.values), c.code) << c.values[0].first << "=" << c.values[0].second << ": " << c.why;
    }
}

TEST_F(Lan, WhatCannotBeReadIsNoAddress)
{
    const Values one_each[] = {{{kIp, "10.0.0.1"}}, {{kStart, "192.168.1.10"}}, {{kEnd, "192.168.1.210"}}};
    const std::string states[] = {"", "1.2.3", "not an address", "255.255.255.0" + std::string(60, ' ')};
    for (const std::string& state : states)
        for (const Values& values : one_each)
        {
            Factory();
            platform.values["getLanSetMask_net"] = state;
            EXPECT_EQ(Set(values), kRefuses) << values[0].first << " under the mask '" << state << "'";
        }
    platform.values["getLanSetMask_net"] = "255.255.255.0";
    platform.failures["getLanSetIp_net"] = 17;
    EXPECT_EQ(Set({{kStart, "192.168.1.10"}}), kRefuses) << "the accessor's failure";
    EXPECT_EQ(Set({{kWanGateway, "192.168.1.10"}}), kRefuses);
    Factory();
    platform.values["getLanSetEnd_net"] = "";
    EXPECT_EQ(Set({{kStart, "192.168.1.10"}}), kRefuses) << "no end";
}

TEST_F(Lan, DefaultGatewayAsksThePlatform)
{
    EXPECT_EQ(Set({{kRoute, "3"}}), kTakes);
    EXPECT_EQ(platform.Calls("get getWanSetCount_net").size(), 1u);
    for (const char* count : {"", "none", "-3", "99999999999"})
    {
        platform.values["getWanSetCount_net"] = count;
        EXPECT_EQ(validDefaultGateway("1"), kRefuses) << "profiles: '" << count << "'";
    }
    platform.values["getWanSetCount_net"] = "3";
    for (const char* enable : {"", "0", "11", "1 ", "true", "100000000000"})
    {
        platform.nvram["apn1_enable"] = enable;
        EXPECT_EQ(validDefaultGateway("1"), kRefuses) << "enabled: '" << enable << "'";
    }
    platform.nvram.erase("apn1_enable");
    EXPECT_EQ(validDefaultGateway("1"), kRefuses) << "no such key";
}

TEST_F(Lan, DmzIpLiesInTheLan)
{
    ExpectCodes(CHECK(validDmzIp),
                {{kTakes, "a host; the router itself is not told apart", {"192.168.1.50", "192.168.1.1"}},
                 {kRefuses, "broadcast and network", {"192.168.1.255", "192.168.1.0"}},
                 {kRefuses, "outside", {"192.168.2.50", "10.0.0.1"}},
                 {kRefuses, "no address", {"192.168.1.050", ""}}});
}

TEST_F(Lan, MasksOfALan)
{
    ExpectCodes(
        CHECK(validLanMask),
        {{kTakes, "24 to 26 bits", {"255.255.255.0", "255.255.255.128", "255.255.255.192"}},
         {kTakes, "27 to 30 bits", {"255.255.255.224", "255.255.255.240", "255.255.255.248", "255.255.255.252"}},
         {kTakes, "any character for a dot", {"255x255y255z0"}},
         {kRefuses, "no host", {"255.255.255.254", "255.255.255.255"}},
         {kRefuses, "larger than a LAN", {"255.255.0.0"}},
         {kRefuses, "no mask", {"255.255.255.1", "255.255.255.00", "255.255.255", ""}},
         {kRefuses, "a blank", {"255.255.255.0 ", " 255.255.255.0"}}});
    OutputCapture output;
    EXPECT_EQ(validLanMask("255.255.255.0"), kTakes);
    EXPECT_EQ(output.Text(), "match") << "and no log line";
    EXPECT_EQ(validLanMask("255.255.0.0"), kRefuses);
    EXPECT_EQ(output.Text(), "match");
}

TEST_F(Lan, SameSegmentComparesThreeParts)
{
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.1.200", "255.255.255.0"), 0);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.1.200", "255.255.255.128"), 0) << "fourth parts do not count";
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.2.1", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.2.1", "255.255.0.0"), 0);
    EXPECT_EQ(inSameSegment("192.168.1.1", "193.168.1.1", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.169.1.1", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1", "192.168.1.1", "255.255.255.0"), 2) << "a part missing";
    EXPECT_EQ(inSameSegment("192.168.1.1", "", "255.255.255.0"), 2);
    EXPECT_EQ(inSameSegment("192.168.1.1", "192.168.1.1", "255.255.255"), 2);
}

TEST_F(Lan, SnapshotReadNeverPassesItsBuffer)
{
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
    EXPECT_EQ(SnapshotRead("webHttpPort", value), 17);
    EXPECT_STREQ(value, "");
    EXPECT_EQ(SnapshotRead("webHttpPort", std::span(value, 1)), 17) << "room for the zero byte alone";
}
}  // namespace kobd::test
