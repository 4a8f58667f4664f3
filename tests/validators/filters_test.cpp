// Filters by MAC address, port and IPv4 address, and port triggering.
#include <gtest/gtest.h>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/filters.h"

namespace kobd::test
{
namespace
{
const RowCheck kMacCheck = {
    validMacFilter, "validMacFilter", "FwMacFilterTable", {{"MAC", "00:11:22:33:44:55"}, {"MAC_LIST", "LIST1"}}};
const RowCheck kPortCheck = {validPortFilter,
                             "validPortFilter",
                             "FwPortFilterTable",
                             {{"Protocol", "tcp"}, {"DestIPAddress", "192.168.1.20"}, {"DestPort", "80"}}};
const RowCheck kIpCheck = {
    validIpFilter, "validIpFilter", "FwIpFilterTable", {{"DestIPAddress", "192.168.1.20"}, {"IP_LIST", "black"}}};
const RowCheck kTriggerCheck = {
    validPortTrigger,
    "validPortTrigger",
    "FwPortTriggerTable",
    {{"OutProtocol", "tcp"}, {"OutPort", "100-200"}, {"InProtocol", "udp"}, {"InPort", "5000"}}};

const std::string kProtocol = "invalid protocol\n";
const std::string kIpv4 = "invalid ipv4\n";
const std::string kPort = "invalid port\n";
const std::string kInList = "the entry has been in list\n";
const std::string kProto = "Proto not valid";
const std::string kPorts = "Port not valid";
}  // namespace

TEST(MacFilter, Addresses)
{
    ResetRows();
    kMacCheck.ExpectEach({
        {"MAC", kAccept, kSilent, "colons, hyphens", {"00:11:22:33:44:55", "00-11-22-33-44-55", "00:00:00:00:00:00"}},
        {"MAC_LIST", kAccept, kSilent, "the list may be empty", {""}},
        {"MAC", kRefuse, kSilent, "empty, broadcast", {"", "FF:FF:FF:FF:FF:FF", "ff:Ff:ff:ff:ff:ff"}},
        {"MAC", kRefuse, kSilent, "mixed separators", {"00:11-22:33:44:55"}},
        {"MAC", kRefuse, kSilent, "other digits", {"00:11:22:33:44:5", "00:11:22:33:44:555", "00:11:22:33:44:5G"}},
    });
    kMacCheck.ExpectNothingBesideFields();
}

TEST(MacFilter, Duplicates)
{
    ResetRows();
    kMacCheck.ExpectWalk(nullptr);
    kMacCheck.Store({kMacCheck.Row(3), kMacCheck.Row(4, {{"MAC", "AA:BB:CC:DD:EE:FF"}})});
    kMacCheck.Expect({
        {{}, kRefuse, kSilent, "same address, same list"},
        {{{"MAC_LIST", "LIST2"}}, kAccept, kSilent, "same address in another list"},
        {{{"MAC", "00-11-22-33-44-55"}}, kAccept, kSilent, "other separators, another text"},
        {{{"MAC", "00:11:22:33:44:56"}}, kAccept, kSilent, "another address"},
        {{{"MAC", "aa:bb:cc:dd:ee:ff"}}, kRefuse, kSilent, "the second stored row counts too"},
    });
    std::string small = kMacCheck.Row(1);
    small.replace(24, 17, "aa:bb:cc:dd:ee:ff");
    EXPECT_EQ(kMacCheck.Judge(small).code, kRefuse) << "letters that nobody made upper-case yet";
    EXPECT_EQ(kMacCheck.Judge(small).row, small) << "and stay as they are";
}

TEST(PortFilter, FieldsInOrder)
{
    ResetRows();
    kPortCheck.ExpectEach({
        {"Protocol", kAccept, kSilent, "one or both", {"udp", "tcpudp"}},
        {"Protocol", kRefuse, kProtocol, "no protocol of a port rule", {"TCP", "icmp", "all", "", "tcp "}},
        {"DestIPAddress", kRefuse, kIpv4, "no address of a host", {"192.168.1.256", "0.0.0.0", ""}},
        {"DestPort", kAccept, kSilent, "lowest and highest", {"1", "65535"}},
        {"DestPort", kRefuse, kPort, "out of range", {"65536", "0", "4294967376"}},
        {"DestPort", kRefuse, kPort, "no port; a range is none", {"080", "80-90", ""}},
    });
    kPortCheck.Expect({
        {{{"Protocol", "x"}, {"DestIPAddress", "x"}}, kRefuse, kProtocol, "the protocol is judged first"},
        {{{"DestIPAddress", "x"}, {"DestPort", "x"}}, kRefuse, kIpv4, "then the address"},
    });
    kPortCheck.ExpectNothingBesideFields();
}

TEST(PortFilter, Duplicates)
{
    ResetRows();
    kPortCheck.ExpectWalk("no enough memory\n");
    kPortCheck.Store({kPortCheck.Row(9, {{"DestPort", "81"}}), kPortCheck.Row(2)});
    kPortCheck.Expect({
        {{}, kRefuse, kInList, "all three equal"},
        {{{"Protocol", "tcpudp"}}, kAccept, kSilent, "another protocol"},
        {{{"DestIPAddress", "192.168.1.21"}}, kAccept, kSilent, "another address"},
        {{{"DestPort", "82"}}, kAccept, kSilent, "another port"},
        {{{"DestPort", "81"}}, kRefuse, kInList, "the first stored row"},
    });
    EXPECT_EQ(kPortCheck.Judge(kPortCheck.Row(1)).lines.back(), "validPortFilter: the entry has been in list\n");
}

TEST(IpFilter, FieldsAndDuplicates)
{
    ResetRows();
    kIpCheck.ExpectWalk(nullptr);
    kIpCheck.Store({kIpCheck.Row(5)});
    kIpCheck.Expect({
        {{}, kRefuse, kSilent, "same address, same list"},
        {{{"IP_LIST", "white"}}, kAccept, kSilent, "same address in another list"},
        {{{"IP_LIST", "Black"}}, kAccept, kSilent, "texts are compared exactly"},
        {{{"DestIPAddress", ""}}, kRefuse, kSilent, "empty, without a line"},
    });
    kIpCheck.ExpectEach({
        {"DestIPAddress", kAccept, kSilent, "beginning and continuation of one", {"192.168.1.2", "192.168.1.200"}},
        {"DestIPAddress", kRefuse, kIpv4, "three parts, a range", {"192.168.1", "192.168.1.0/24"}},
    });
    kIpCheck.ExpectNothingBesideFields();
}

TEST(PortTrigger, ProtocolsThenPorts)
{
    ResetRows();
    kTriggerCheck.Expect({
        {{}, kAccept, kSilent, "a range and a port"},
        {{{"OutPort", "1-65535"}, {"InPort", "1-65535"}}, kAccept, kSilent, "all ports"},
        {{{"InProtocol", "all"}, {"OutPort", "0"}}, kRefuse, kProto, "protocols are judged first"},
    });
    kTriggerCheck.ExpectEach({
        {"OutProtocol", kAccept, kSilent, "udp", {"udp"}},
        {"OutProtocol", kRefuse, kProto, "neither, or both", {"TCP", "tcpudp", ""}},
        {"InProtocol", kRefuse, kProto, "the way in is judged too", {"TCP"}},
        {"OutPort", kRefuse, kPorts, "not strictly rising", {"200-100", "80-80"}},
        {"OutPort", kRefuse, kPorts, "no port, no range", {"0", "80-", "1-2-3", "080", " 80", ""}},
        {"InPort", kRefuse, kPorts, "out of range", {"65536", "1-65536", "0-5"}},
    });
    kTriggerCheck.ExpectNothingBesideFields();
    EXPECT_EQ(validPortTrigger(nullptr), kRefuse);
    EXPECT_TRUE(platform.calls.empty()) << "stored rows are of no interest";
}
}  // namespace kobd::test
