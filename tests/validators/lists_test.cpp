// Address bindings, static routes and speed dial numbers.
#include <gtest/gtest.h>

#include "dictionary/name_index.h"
#include "dictionary/staged_values.h"
#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/bundled_address.h"
#include "validators/speed_dial.h"
#include "validators/static_route.h"

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
    kBinding.ExpectEach({
        {"IP", kAccept, kSilent, "in the pool", {"192.168.1.20", "192.168.1.10", "192.168.1.200"}},
        {"IP", kRefuse, kSilent, "before and behind the pool", {"192.168.1.9", "192.168.1.201"}},
        {"IP", kRefuse, kSilent, "the router itself", {"192.168.1.1"}},
        {"IP", kRefuse, kSilent, "another network", {"192.168.2.20", "192.169.1.20", "191.168.1.20"}},
        {"IP", kRefuse, kSilent, "no address of a host", {"0.0.0.0", "127.0.0.20"}},
        {"MAC", kRefuse, kSilent, "broadcast", {"FF:FF:FF:FF:FF:FF"}},
        {"MAC", kAccept, kSilent, "all zero", {"00:00:00:00:00:00"}},
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
        const char* ip;
        std::string own;
        const char* why;
        std::vector<const char*> masks;
    } kCases[] = {
        {"10.1.2.3", kSilent, "one host", {"255.255.255.255"}},
        {"10.1.2.2", kSilent, "31 bits", {"255.255.255.254"}},
        {"10.1.240.0", kSilent, "20 bits", {"255.255.240.0"}},
        {"128.0.0.0", kSilent, "one bit", {"128.0.0.0"}},
        {"10.1.2.0", kSilent, "leading zeros", {"255.255.255.000"}},
        {"10.1.2.0", kInvalidMask, "no bit", {"0.0.0.0"}},
        {"10.1.2.0", kHostBits, "no bit, written otherwise", {"0.0.0.00"}},
        {"10.1.2.0", kInvalidMask, "a gap, ones at the bottom", {"255.0.255.0", "255.255.255.1", "0.255.255.255"}},
        {"10.1.2.0", kInvalidMask, "not four parts", {"255.255.255", "255.255.255.0.0", "255.255.255.0.", "24", ""}},
        {"10.1.2.0", kInvalidMask, "a part that is none", {"255..255.0", "255.255.255.256", "-1.-1.-1.0"}},
        {"10.1.2.0", kInvalidMask, "would wrap into a mask", {"511.255.255.0", "4294967551.255.255.0"}},
        {"10.1.2.0", kInvalidMask, "would wrap in 64 bits", {"18446744073709551871.255.255.0"}},
        {"10.1.2.0", kInvalidMask, "more beside it, IPv6", {"255.255.255.0x", " 255.255.255.0", "ffff::"}},
        {"x", kInvalidMask, "the mask is judged first", {"x"}},
    };
    for (const auto& c : kCases)
        for (const char* mask : c.masks)
        {
            const RowVerdict verdict = kRoute.Judge(kRoute.Row(1, {{"Netmask", mask}, {"IP", c.ip}}));
            EXPECT_EQ(verdict.code, c.own.empty() ? kAccept : kRefuse) << mask << ": " << c.why;
            EXPECT_EQ(verdict.own, c.own) << mask << ": " << c.why;
            const std::string kind = c.own == kInvalidMask ? "] is invalid mask\n" : "] is valid mask\n";
            ASSERT_FALSE(verdict.lines.empty());
            EXPECT_EQ(verdict.lines.front(), std::string("validStaticRouteMask: [") + mask + kind) << c.why;
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
        {{{"Subnetmask", "255.255.254.0"}, {"IP", "10.1.3.0"}}, kRefuse, kHostBits, "a host bit in the third part"},
        {{{"Gateway", "x"}}, kAccept, kSilent, "elsewhere the gateway is not judged"},
        {{{"Interface", "lan"}, {"Gateway", "x"}}, kAccept, kSilent, "exactly LAN"},
        {{{"Interface", "LAN1"}, {"Gateway", "x"}}, kAccept, kSilent, "exactly LAN, nothing behind"},
    });
    kRoute.ExpectEach({
        {"IP", kRefuse, kInvalidIp, "no network", {"0.0.0.0", "10.1.2.00", "10.1.2", "", "10.1.2.0/24"}},
    });
    RowCheck lan = kRoute;
    lan.good.emplace_back("Interface", "LAN");
    lan.ExpectEach({
        {"Gateway", kAccept, kSilent, "in the LAN", {"192.168.1.254"}},
        {"Gateway", kRefuse, kGateway, "network address, reserved, empty", {"192.168.1.0", "10.254.254.1", ""}},
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
    kDial.ExpectEach({
        {"SpeedDialNumber", kAccept, kSilent, "1 to 99", {"1", "9", "01", "99"}},
        {"SpeedDialNumber", kRefuse, kDialNumber, "zero, three digits", {"0", "00", "100", "001"}},
        {"SpeedDialNumber", kRefuse, kDialNumber, "no number", {"", "a", "1a", "-1", " 1"}},
        {"ActureNumber", kAccept, kSilent, "none, every key, longest", {"", "*31#0123456789", std::string(32, '7')}},
        {"ActureNumber", kRefuse, kActure, "too long, no key", {std::string(33, '7'), "+49123", "12 34", "12a"}},
        {"Description", kAccept, kSilent, "every kind of character", {description, std::string(31, ' ')}},
        {"Description", kRefuse, kDescription, "too long", {std::string(32, 'd')}},
        {"Description", kRefuse, kDescription, "other characters", {"a,b", "a'b", "a\\b", "a&b", "a\tb", "\xC3\xA9"}},
    });
    kDial.Expect({
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
