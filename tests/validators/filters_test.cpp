// Filters by MAC address, port and IPv4 address, and port triggering.
#include <gtest/gtest.h>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/firewall.h"

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
    kMacCheck.Expect({
        {{}, kAccept, kSilent, "colons"},
        {{{"MAC", "00-11-22-33-44-55"}}, kAccept, kSilent, "hyphens"},
        {{{"MAC", "00:00:00:00:00:00"}}, kAccept, kSilent, "all zero"},
        {{{"MAC_LIST", ""}}, kAccept, kSilent, "the list may be empty"},
        {{{"MAC", ""}}, kRefuse, kSilent, "empty"},
        {{{"MAC", "FF:FF:FF:FF:FF:FF"}}, kRefuse, kSilent, "broadcast"},
        {{{"MAC", "ff:Ff:ff:ff:ff:ff"}}, kRefuse, kSilent, "broadcast in small letters"},
        {{{"MAC", "00:11-22:33:44:55"}}, kRefuse, kSilent, "mixed separators"},
        {{{"MAC", "00:11:22:33:44:5"}}, kRefuse, kSilent, "one digit short"},
        {{{"MAC", "00:11:22:33:44:555"}}, kRefuse, kSilent, "one digit more"},
        {{{"MAC", "00:11:22:33:44:5G"}}, kRefuse, kSilent, "no hexadecimal digit"},
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
    kPortCheck.Expect({
        {{{"Protocol", "udp"}}, kAccept, kSilent, "udp"},
        {{{"Protocol", "tcpudp"}}, kAccept, kSilent, "both"},
        {{{"Protocol", "TCP"}}, kRefuse, kProtocol, "capitals"},
        {{{"Protocol", "icmp"}}, kRefuse, kProtocol, "has no ports"},
        {{{"Protocol", "all"}}, kRefuse, kProtocol, "no protocol of a port rule"},
        {{{"Protocol", ""}}, kRefuse, kProtocol, "empty"},
        {{{"Protocol", "tcp "}}, kRefuse, kProtocol, "a blank behind"},
        {{{"DestIPAddress", "192.168.1.256"}}, kRefuse, kIpv4, "part above 255"},
        {{{"DestIPAddress", "0.0.0.0"}}, kRefuse, kIpv4, "no host"},
        {{{"DestIPAddress", ""}}, kRefuse, kIpv4, "empty"},
        {{{"DestPort", "65535"}}, kAccept, kSilent, "highest port"},
        {{{"DestPort", "1"}}, kAccept, kSilent, "lowest port"},
        {{{"DestPort", "65536"}}, kRefuse, kPort, "above the highest"},
        {{{"DestPort", "0"}}, kRefuse, kPort, "port 0"},
        {{{"DestPort", "080"}}, kRefuse, kPort, "leading zero"},
        {{{"DestPort", "80-90"}}, kRefuse, kPort, "one port, no range"},
        {{{"DestPort", ""}}, kRefuse, kPort, "empty"},
        {{{"DestPort", "4294967376"}}, kRefuse, kPort, "would wrap to 80"},
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
        {{{"DestIPAddress", "192.168.1.2"}}, kAccept, kSilent, "the beginning of a stored address"},
        {{{"DestIPAddress", "192.168.1.200"}}, kAccept, kSilent, "the continuation of a stored address"},
        {{{"DestIPAddress", ""}}, kRefuse, kSilent, "empty, without a line"},
        {{{"DestIPAddress", "192.168.1"}}, kRefuse, kIpv4, "three parts"},
        {{{"DestIPAddress", "192.168.1.0/24"}}, kRefuse, kIpv4, "a range"},
    });
    kIpCheck.ExpectNothingBesideFields();
}

TEST(PortTrigger, ProtocolsThenPorts)
{
    ResetRows();
    kTriggerCheck.Expect({
        {{}, kAccept, kSilent, "a range and a port"},
        {{{"OutPort", "1-65535"}, {"InPort", "1-65535"}}, kAccept, kSilent, "all ports"},
        {{{"OutProtocol", "udp"}}, kAccept, kSilent, "udp"},
        {{{"OutProtocol", "TCP"}}, kRefuse, kProto, "capitals"},
        {{{"OutProtocol", "tcpudp"}}, kRefuse, kProto, "not both"},
        {{{"OutProtocol", ""}}, kRefuse, kProto, "empty"},
        {{{"InProtocol", "TCP"}}, kRefuse, kProto, "the way in is judged too"},
        {{{"InProtocol", "all"}, {"OutPort", "0"}}, kRefuse, kProto, "protocols are judged first"},
        {{{"OutPort", "0"}}, kRefuse, kPorts, "port 0"},
        {{{"OutPort", "200-100"}}, kRefuse, kPorts, "falling"},
        {{{"OutPort", "80-80"}}, kRefuse, kPorts, "not strictly rising"},
        {{{"OutPort", "80-"}}, kRefuse, kPorts, "half a range"},
        {{{"OutPort", "1-2-3"}}, kRefuse, kPorts, "three parts"},
        {{{"OutPort", "080"}}, kRefuse, kPorts, "leading zero"},
        {{{"OutPort", " 80"}}, kRefuse, kPorts, "a blank before"},
        {{{"OutPort", ""}}, kRefuse, kPorts, "empty"},
        {{{"InPort", "65536"}}, kRefuse, kPorts, "above the highest"},
        {{{"InPort", "1-65536"}}, kRefuse, kPorts, "upper end above the highest"},
        {{{"InPort", "0-5"}}, kRefuse, kPorts, "lower end 0"},
    });
    kTriggerCheck.ExpectNothingBesideFields();
    EXPECT_EQ(validPortTrigger(nullptr), kRefuse);
    EXPECT_TRUE(platform.calls.empty()) << "stored rows are of no interest";
}
}  // namespace kobd::test
