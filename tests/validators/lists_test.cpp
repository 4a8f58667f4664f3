// Address bindings, static routes and speed dial numbers.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/staged_values.h"
#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/lists.h"

namespace kobd::test
{
namespace
{
const RowCheck kBinding = {validBundledAddress,
                           "validBundledAddress",
                           "IpMacBindTable",
                           {{"IP", "192.168.1.20"}, {"MAC", "00:11:22:33:44:55"}}};
const RowCheck kRoute = {validNetWorkStaticRouteList,
                         "validNetWorkStaticRouteList",
                         "IPv4RoutingTable",
                         {{"IP", "10.1.2.0"}, {"Netmask", "255.255.255.0"}, {"Interface", "WAN"}}};
const RowCheck kDial = {speedDialListValid, "speedDialListValid", "SpeedDialTable", {{"SpeedDialNumber", "5"}}};

const std::string kInvalidMask = "invalid mask\n";
const std::string kInvalidIp = "invalid ipaddress\n";
const std::string kHostBits = "ip & subnet not equal ip\n";
const std::string kGateway = "gateway and LAN IP not the same subnet\n";
const std::string kInList = "the entry has been in list\n";
const std::string kDialNumber = "invalid speedDialNum";
const std::string kActure = "invalid actureNum";
const std::string kDescription = "invalid description";
const std::string kDialInList = "the entry has been in the list";

// The router at 192.168.1.1, its pool from .10 to .200.
void ResetLan()
{
    ResetRows();
    StagedValuesFree();
    platform.values["getLanSetIp_net"] = "192.168.1.1";
    platform.values["getLanSetMask_net"] = "255.255.255.0";
    platform.values["getLanSetStart_net"] = "192.168.1.10";
    platform.values["getLanSetEnd_net"] = "192.168.1.200";
}

void Stage(const char* object, const std::string& value)
{
    ASSERT_EQ(StageValue(*NameLookup(object).object, value), 0);
}
}  // namespace

TEST(BundledAddress, AddressAndPool)
{
    ResetLan();
    kBinding.Expect({
        {{}, kAccept, kSilent, "in the pool"},
        {{{"IP", "192.168.1.10"}}, kAccept, kSilent, "first of the pool"},
        {{{"IP", "192.168.1.200"}}, kAccept, kSilent, "last of the pool"},
        {{{"IP", "192.168.1.9"}}, kRefuse, kSilent, "before the pool"},
        {{{"IP", "192.168.1.201"}}, kRefuse, kSilent, "behind the pool"},
        {{{"IP", "192.168.1.1"}}, kRefuse, kSilent, "the router itself"},
        {{{"IP", "192.168.2.20"}}, kRefuse, kSilent, "another third part"},
        {{{"IP", "192.169.1.20"}}, kRefuse, kSilent, "another second part"},
        {{{"IP", "191.168.1.20"}}, kRefuse, kSilent, "another first part"},
        {{{"IP", "0.0.0.0"}}, kRefuse, kSilent, "no address"},
        {{{"IP", "127.0.0.20"}}, kRefuse, kSilent, "loopback"},
        {{{"MAC", "FF:FF:FF:FF:FF:FF"}}, kRefuse, kSilent, "broadcast"},
        {{{"MAC", "00:00:00:00:00:00"}}, kAccept, kSilent, "all zero"},
    });
    kBinding.ExpectNothingBesideFields();
    platform.values["getLanSetIp_net"] = "192.168.1.20";
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1)).code, kRefuse) << "the router itself, inside its pool";
}

TEST(BundledAddress, LanAsTheRequestWillLeaveIt)
{
    ResetLan();
    Stage("networkLanSettingIp", "10.0.0.1");
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1)).code, kRefuse);
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1, {{"IP", "10.0.0.10"}})).code, kAccept) << "the pool by its last parts";
    Stage("networkLanSettingStart", "10.0.0.50");
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1, {{"IP", "10.0.0.49"}})).code, kRefuse);
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1, {{"IP", "10.0.0.50"}})).code, kAccept);
    Stage("networkLanSettingEnd", "10.0.0.50");
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1, {{"IP", "10.0.0.51"}})).code, kRefuse);
    for (const char* object : {"networkLanSettingIp", "networkLanSettingStart", "networkLanSettingEnd"})
        for (const std::string& value : {std::string(), std::string("10.0.0"), std::string(600, '1')})
        {
            ResetLan();
            Stage(object, value);
            EXPECT_EQ(kBinding.Judge(kBinding.Row(1)).code, kRefuse) << object << " is no address: " << value;
        }
    ResetLan();
    platform.failures["getLanSetIp_net"] = 4;
    EXPECT_EQ(kBinding.Judge(kBinding.Row(1)).code, kRefuse) << "the router's address cannot be read";
    StagedValuesFree();
}

TEST(BundledAddress, OneBindingEach)
{
    ResetLan();
    kBinding.ExpectWalk(nullptr);
    kBinding.Store({kBinding.Row(6, {{"IP", "192.168.1.21"}, {"MAC", "00:11:22:33:44:AA"}}),
                    kBinding.Row(7, {{"IP", "192.168.1.22"}, {"MAC", "00:11:22:33:44:BB"}})});
    kBinding.Expect({
        {{}, kAccept, kSilent, "neither is bound"},
        {{{"IP", "192.168.1.21"}}, kRefuse, kSilent, "the address is bound"},
        {{{"MAC", "00:11:22:33:44:BB"}}, kRefuse, kSilent, "the MAC is bound"},
        {{{"MAC", "01:11:22:33:44:BB"}}, kAccept, kSilent, "its first byte counts"},
        {{{"MAC", "00:11:22:33:44:BC"}}, kAccept, kSilent, "its last byte counts"},
        {{{"Name", "printer"}}, kAccept, kSilent, "the name is of no interest"},
    });
    EXPECT_EQ(kBinding.Judge(kBinding.Row(6, {{"IP", "192.168.1.23"}, {"MAC", "00:11:22:33:44:AA"}})).code, kAccept)
        << "a binding keeps its MAC and moves";
}

TEST(StaticRoute, Masks)
{
    ResetLan();
    const struct
    {
        const char* mask;
        const char* ip;
        std::string own;
        const char* why;
    } kCases[] = {
        {"255.255.255.255", "10.1.2.3", kSilent, "one host"},
        {"255.255.255.254", "10.1.2.2", kSilent, "31 bits"},
        {"255.255.240.0", "10.1.240.0", kSilent, "20 bits"},
        {"128.0.0.0", "128.0.0.0", kSilent, "one bit"},
        {"255.255.255.000", "10.1.2.0", kSilent, "leading zeros"},
        {"0.0.0.0", "10.1.2.0", kInvalidMask, "no bit"},
        {"0.0.0.00", "10.1.2.0", kHostBits, "no bit, written otherwise"},
        {"255.0.255.0", "10.1.2.0", kInvalidMask, "a gap"},
        {"255.255.255.1", "10.1.2.0", kInvalidMask, "a gap in the last part"},
        {"0.255.255.255", "10.1.2.0", kInvalidMask, "ones at the bottom"},
        {"255.255.255", "10.1.2.0", kInvalidMask, "three parts"},
        {"255.255.255.0.0", "10.1.2.0", kInvalidMask, "five parts"},
        {"255.255.255.0.", "10.1.2.0", kInvalidMask, "a dot behind"},
        {"255..255.0", "10.1.2.0", kInvalidMask, "an empty part"},
        {"255.255.255.256", "10.1.2.0", kInvalidMask, "a part above 255"},
        {"511.255.255.0", "10.1.2.0", kInvalidMask, "would wrap into a mask"},
        {"4294967551.255.255.0", "10.1.2.0", kInvalidMask, "would wrap in 32 bits"},
        {"18446744073709551871.255.255.0", "10.1.2.0", kInvalidMask, "would wrap in 64 bits"},
        {"-1.-1.-1.0", "10.1.2.0", kInvalidMask, "signs"},
        {"255.255.255.0x", "10.1.2.0", kInvalidMask, "more behind"},
        {" 255.255.255.0", "10.1.2.0", kInvalidMask, "a blank"},
        {"24", "10.1.2.0", kInvalidMask, "a prefix"},
        {"", "10.1.2.0", kInvalidMask, "empty"},
        {"ffff::", "10.1.2.0", kInvalidMask, "an IPv6 text"},
        {"x", "x", kInvalidMask, "the mask is judged first"},
    };
    for (const auto& c : kCases)
    {
        const RowVerdict verdict = kRoute.Judge(kRoute.Row(1, {{"Netmask", c.mask}, {"IP", c.ip}}));
        EXPECT_EQ(verdict.code, c.own.empty() ? kAccept : kRefuse) << c.mask << ": " << c.why;
        EXPECT_EQ(verdict.own, c.own) << c.mask << ": " << c.why;
        const std::string kind = c.own == kInvalidMask ? "] is invalid mask\n" : "] is valid mask\n";
        ASSERT_FALSE(verdict.lines.empty());
        EXPECT_EQ(verdict.lines.front(), std::string("validStaticRouteMask: [") + c.mask + kind) << c.why;
    }
    const std::vector<std::string> expected = {
        "validStaticRouteMask: [255.255.255.0] is valid mask\n",
        "validIpv4: validstart\n",
        "validIpv4: [10.1.2.3] is valid IPv4\n",
        "validNetWorkStaticRouteList: ip & subnet not equal ip\n",
    };
    EXPECT_EQ(kRoute.Judge(kRoute.Row(1, {{"IP", "10.1.2.3"}})).lines, expected);
}

TEST(StaticRoute, AddressAndGateway)
{
    ResetLan();
    kRoute.Expect({
        {{}, kAccept, kSilent, "a network"},
        {{{"desIP", "192.168.1.5"}}, kRefuse, kHostBits, "desIP is another name of IP; host bits"},
        {{{"IP", "0.0.0.0"}}, kRefuse, kInvalidIp, "the default route"},
        {{{"IP", "10.1.2.00"}}, kRefuse, kInvalidIp, "leading zero"},
        {{{"IP", "10.1.2"}}, kRefuse, kInvalidIp, "three parts"},
        {{{"IP", ""}}, kRefuse, kInvalidIp, "empty"},
        {{{"IP", "10.1.2.0/24"}}, kRefuse, kInvalidIp, "a prefix behind"},
        {{{"Subnetmask", "255.255.254.0"}, {"IP", "10.1.3.0"}}, kRefuse, kHostBits, "a host bit in the third part"},
        {{{"Gateway", "x"}}, kAccept, kSilent, "elsewhere the gateway is not judged"},
        {{{"Interface", "lan"}, {"Gateway", "x"}}, kAccept, kSilent, "exactly LAN"},
        {{{"Interface", "LAN1"}, {"Gateway", "x"}}, kAccept, kSilent, "exactly LAN, nothing behind"},
        {{{"Interface", "LAN"}, {"Gateway", "192.168.1.254"}}, kAccept, kSilent, "in the LAN"},
        {{{"Interface", "LAN"}, {"Gateway", "192.168.1.0"}}, kRefuse, kGateway, "network address"},
        {{{"Interface", "LAN"}, {"Gateway", "10.254.254.1"}}, kRefuse, kGateway, "reserved"},
        {{{"Interface", "LAN"}, {"Gateway", ""}}, kRefuse, kGateway, "empty"},
    });
    kRoute.ExpectNothingBesideFields();
}

TEST(StaticRoute, Duplicates)
{
    ResetLan();
    kRoute.ExpectWalk("no enough memory\n");
    kRoute.Store({kRoute.Row(3, {{"Interface", "LAN"}, {"Gateway", "192.168.1.7"}})});
    kRoute.Expect({
        {{}, kRefuse, kInList, "same network by another way"},
        {{{"Netmask", "255.255.255.128"}}, kAccept, kSilent, "another mask"},
        {{{"Netmask", "255.255.255.00"}}, kAccept, kSilent, "the same mask in another text"},
        {{{"IP", "10.1.20.0"}}, kAccept, kSilent, "another network"},
    });
}

TEST(SpeedDial, Fields)
{
    ResetRows();
    const std::string description = "abcXYZ190[]@=.-*()$#!_ ^{}|~";
    kDial.Expect({
        {{{"SpeedDialNumber", "1"}}, kAccept, kSilent, "lowest"},
        {{{"SpeedDialNumber", "9"}}, kAccept, kSilent, "highest of one digit"},
        {{{"SpeedDialNumber", "01"}}, kAccept, kSilent, "lowest of two digits"},
        {{{"SpeedDialNumber", "99"}}, kAccept, kSilent, "highest"},
        {{{"SpeedDialNumber", "0"}}, kRefuse, kDialNumber, "zero"},
        {{{"SpeedDialNumber", "00"}}, kRefuse, kDialNumber, "zero twice"},
        {{{"SpeedDialNumber", "100"}}, kRefuse, kDialNumber, "three digits"},
        {{{"SpeedDialNumber", "001"}}, kRefuse, kDialNumber, "three digits, small"},
        {{{"SpeedDialNumber", ""}}, kRefuse, kDialNumber, "empty"},
        {{{"SpeedDialNumber", "a"}}, kRefuse, kDialNumber, "a letter"},
        {{{"SpeedDialNumber", "1a"}}, kRefuse, kDialNumber, "a letter behind"},
        {{{"SpeedDialNumber", "-1"}}, kRefuse, kDialNumber, "a sign"},
        {{{"SpeedDialNumber", " 1"}}, kRefuse, kDialNumber, "a blank"},
        {{{"ActureNumber", ""}}, kAccept, kSilent, "no telephone number"},
        {{{"ActureNumber", "*31#0123456789"}}, kAccept, kSilent, "every key"},
        {{{"ActureNumber", std::string(32, '7')}}, kAccept, kSilent, "longest"},
        {{{"ActureNumber", std::string(33, '7')}}, kRefuse, kActure, "one more"},
        {{{"ActureNumber", "+49123"}}, kRefuse, kActure, "plus"},
        {{{"ActureNumber", "12 34"}}, kRefuse, kActure, "a blank"},
        {{{"ActureNumber", "12a"}}, kRefuse, kActure, "a letter"},
        {{{"Description", description}}, kAccept, kSilent, "of every kind that is allowed"},
        {{{"Description", std::string(31, ' ')}}, kAccept, kSilent, "longest"},
        {{{"Description", std::string(32, 'd')}}, kRefuse, kDescription, "one more"},
        {{{"Description", "a,b"}}, kRefuse, kDescription, "comma"},
        {{{"Description", "a'b"}}, kRefuse, kDescription, "quote"},
        {{{"Description", "a\\b"}}, kRefuse, kDescription, "backslash"},
        {{{"Description", "a&b"}}, kRefuse, kDescription, "ampersand"},
        {{{"Description", "a\tb"}}, kRefuse, kDescription, "tab"},
        {{{"Description", "\xC3\xA9"}}, kRefuse, kDescription, "beyond ASCII"},
        {{{"SpeedDialNumber", "0"}, {"ActureNumber", "x"}}, kRefuse, kDialNumber, "the short number is judged first"},
        {{{"ActureNumber", "x"}, {"Description", ","}}, kRefuse, kActure, "then the telephone number"},
    });
    kDial.ExpectNothingBesideFields();
}

TEST(SpeedDial, NumbersAreUnique)
{
    ResetRows();
    kDial.ExpectWalk("memery alloc failed");
    kDial.Store({kDial.Row(2, {{"SpeedDialNumber", "70"}}), kDial.Row(3), kDial.Row(4, {{"SpeedDialNumber", ""}})});
    kDial.Expect({
        {{}, kRefuse, kDialInList, "taken"},
        {{{"SpeedDialNumber", "05"}}, kRefuse, kDialInList, "taken by 5"},
        {{{"SpeedDialNumber", "50"}}, kAccept, kSilent, "begins like it"},
        {{{"SpeedDialNumber", "70"}}, kRefuse, kDialInList, "taken by the first row"},
        {{{"SpeedDialNumber", "7"}}, kAccept, kSilent, "not 70"},
    });
    EXPECT_EQ(kDial.Judge(kDial.Row(3, {{"SpeedDialNumber", "05"}})).code, kAccept) << "its own number otherwise";
}
}  // namespace kobd::test
