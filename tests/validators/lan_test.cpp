// The LAN's addressing and the gateways, through object sets: what one request says together is
// judged together, and against what is stored otherwise.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"
#include "tests/validators/codes.h"
#include "validators/lan_wan.h"

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

struct SetCase
{
    Values values;
    int code;
    const char* why;
};
}  // namespace

TEST_F(Lan, OneRequestIsJudgedTogether)
{
    const SetCase cases[] = {
        {{{kIp, "192.168.1.2"}}, kTakes, "another address of the segment"},
        {{{kIp, "192.168.1.255"}}, kTakes, "the broadcast address is not told apart"},
        {{{kIp, "10.0.0.1"}}, kTakes, "another segment"},
        {{{kIp, "192.168.1.0"}}, kRefuses, "the network address"},
        {{{kIp, "10.254.254.1"}}, kRefuses, "the router's own segment"},
        {{{kIp, "10.254.253.1"}}, kTakes, "beside it"},
        {{{kIp, "127.0.0.1"}}, kRefuses, "no IPv4 address"},
        {{{kIp, "192.168.1.64"}}, kTakes, "no network address under the stored mask"},
        {{{kIp, "192.168.1.64"}, {kMask, "255.255.255.192"}}, kRefuses, "one under the new mask"},
        {{{kMask, "255.255.255.192"}, {kIp, "192.168.1.64"}}, kRefuses, "in either order"},
        {{{kIp, "192.168.1.65"}, {kMask, "255.255.255.192"}}, kTakes, "one above"},
        {{{kIp, "192.168.1.1"}, {kMask, "255.0.0.0"}}, kRefuses, "a mask no LAN can have"},
        {{{kIp, "192.168.1.1"}, {kMask, std::string(512, '2')}}, kRefuses, "a mask longer than any buffer"},
        {{{kMask, std::string(400, '2') + ".1.1.1"}, {kIp, "192.168.1.1"}}, kRefuses, "the same in front"},

        {{{kStart, "192.168.1.2"}}, kTakes, "a lower start"},
        {{{kStart, "192.168.1.1"}}, kTakes, "the router's own address is not told apart"},
        {{{kStart, "192.168.1.200"}}, kTakes, "start and end the same"},
        {{{kStart, "192.168.1.201"}}, kRefuses, "above the end"},
        {{{kStart, "192.168.1.0"}}, kRefuses, "the network address"},
        {{{kStart, "192.168.2.10"}}, kRefuses, "another segment"},
        {{{kStart, "192.169.1.10"}}, kRefuses, "differs in the second part"},
        {{{kStart, "191.168.1.10"}}, kRefuses, "differs in the first part"},
        {{{kStart, "192.168.1"}}, kRefuses, "no address"},
        {{{kEnd, "192.168.1.254"}}, kTakes, "a higher end"},
        {{{kEnd, "192.168.1.255"}}, kRefuses, "the broadcast address"},
        {{{kEnd, "192.168.1.100"}}, kTakes, "end and start the same"},
        {{{kEnd, "192.168.1.99"}}, kRefuses, "below the start"},
        {{{kEnd, "192.168.2.254"}}, kRefuses, "another segment"},
        {{{kStart, "192.168.1.2"}, {kEnd, "192.168.1.10"}}, kTakes, "both moved below the stored start"},
        {{{kEnd, "192.168.1.10"}}, kRefuses, "apart, the end comes below the stored start"},
        {{{kStart, "192.168.1.255"}, {kEnd, "192.168.1.255"}}, kRefuses, "both the broadcast address"},
        {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.62"}, {kEnd, "192.168.1.62"}}, kTakes, "last of a quarter"},
        {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.63"}, {kEnd, "192.168.1.63"}}, kRefuses, "its broadcast"},
        {{{kMask, "255.255.255.192"}, {kStart, "192.168.1.65"}, {kEnd, "192.168.1.70"}}, kRefuses, "its neighbour"},
        {{{kMask, "255.255.255.192"}}, kTakes, "a mask alone is not held against the pool"},

        {{{kIp, "10.1.2.1"}, {kMask, "255.255.255.0"}, {kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, kTakes, "a move"},
        {{{kEnd, "10.1.2.20"}, {kStart, "10.1.2.10"}, {kMask, "255.255.255.0"}, {kIp, "10.1.2.1"}},
         kTakes,
         "in any order"},
        {{{kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}}, kTakes, "the last part alone is held against the stored end"},
        {{{kStart, "10.1.2.10"}, {kEnd, "10.1.2.20"}}, kRefuses, "a pool that moves without its LAN"},
        {{{kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}, {kEnd, "192.168.1.20"}}, kRefuses, "an end left behind"},
        {{{kIp, "10.1.2.1"}, {kIp, "10.1.3.1"}, {kStart, "10.1.2.10"}}, kRefuses, "the last value given counts"},
        {{{kIp, "10.1.3.1"}, {kIp, "10.1.2.1"}, {kStart, "10.1.2.10"}}, kTakes, "the last value given counts"},

        {{{kExtern, "192.168.1.2"}}, kTakes, "not the LAN's address"},
        {{{kExtern, "192.168.1.1"}}, kRefuses, "the LAN's address"},
        {{{kExtern, "192.168.1.1"}, {kIp, "192.168.1.2"}}, kTakes, "no longer the LAN's address"},
        {{{kExtern, "192.168.1.2"}, {kIp, "192.168.1.2"}}, kRefuses, "the LAN's new address"},
        {{{kExtern, "0.0.0.0"}}, kRefuses, "no address"},

        {{{kWanGateway, "192.168.1.254"}}, kTakes, "a host of the LAN"},
        {{{kWanGateway, "192.168.1.1"}}, kRefuses, "the router itself"},
        {{{kWanGateway, "192.168.1.255"}}, kRefuses, "broadcast"},
        {{{kWanGateway, "192.168.1.0"}}, kRefuses, "network"},
        {{{kWanGateway, "10.0.0.1"}}, kRefuses, "outside the LAN"},
        {{{kWanGateway, "10.0.0.2"}, {kIp, "10.0.0.1"}}, kTakes, "inside the new LAN"},
        {{{kWanGateway, "192.168.1.254"}, {kIp, "192.168.1.254"}}, kRefuses, "the router's new address"},
        {{{kWanGateway, "gateway"}}, kRefuses, "no address"},

        {{{kRoute, "1"}}, kTakes, "first profile"},
        {{{kRoute, "3"}}, kTakes, "last profile"},
        {{{kRoute, "003"}}, kTakes, "digits"},
        {{{kRoute, "2"}}, kRefuses, "a profile that is not enabled"},
        {{{kRoute, "4"}}, kRefuses, "above the number of profiles"},
        {{{kRoute, "0"}}, kRefuses, "below"},
        {{{kRoute, "-1"}}, kRefuses, "negative"},
        {{{kRoute, ""}}, kRefuses, "empty"},
        {{{kRoute, "1 "}}, kRefuses, "a blank"},
        {{{kRoute, "1a"}}, kRefuses, "a letter"},
        {{{kRoute, "4294967297"}}, kRefuses, "would wrap to 1"},
    };
    for (const SetCase& c : cases)
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
    const std::vector<CodeCase> cases = {
        {"192.168.1.50", kTakes, "a host"},
        {"192.168.1.1", kTakes, "the router itself is not told apart"},
        {"192.168.1.255", kRefuses, "broadcast"},
        {"192.168.1.0", kRefuses, "network"},
        {"192.168.2.50", kRefuses, "another segment"},
        {"10.0.0.1", kRefuses, "another network"},
        {"192.168.1.050", kRefuses, "leading zero"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validDmzIp), cases);
}

TEST_F(Lan, MasksOfALan)
{
    const std::vector<CodeCase> cases = {
        {"255.255.255.252", kTakes, "smallest segment"},
        {"255.255.255.248", kTakes, "29 bits"},
        {"255.255.255.240", kTakes, "28 bits"},
        {"255.255.255.224", kTakes, "27 bits"},
        {"255.255.255.192", kTakes, "26 bits"},
        {"255.255.255.128", kTakes, "25 bits"},
        {"255.255.255.0", kTakes, "largest segment"},
        {"255x255y255z0", kTakes, "any character for a dot"},
        {"255.255.255.254", kRefuses, "no host"},
        {"255.255.255.255", kRefuses, "no host"},
        {"255.255.0.0", kRefuses, "larger than a LAN"},
        {"255.255.255.1", kRefuses, "a gap"},
        {"255.255.255.00", kRefuses, "two zeros"},
        {"255.255.255.0 ", kRefuses, "a blank"},
        {" 255.255.255.0", kRefuses, "a blank in front"},
        {"255.255.255", kRefuses, "three parts"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validLanMask), cases);
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
