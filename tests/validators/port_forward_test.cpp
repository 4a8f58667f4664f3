// Port forwarding: the external ports as text and as a claim, and what is left in the row.
#include <gtest/gtest.h>

#include "tests/recording_platform.h"
#include "tests/validators/row_verdict.h"
#include "validators/port_forward.h"

namespace kobd::test
{
namespace
{
const RowCheck kCheck = {securityPortForwardListValid,
                         "securityPortForwardListValid",
                         "FwPortForwardTable",
                         {{"Protocol", "tcp"}, {"DestIPAddress", "192.168.1.20"}, {"DestPort", "80"}}};

const std::string kProtocol = "invalid protocol\n";
const std::string kRange = "invalid port range\n";
const std::string kIpv4 = "invalid ipv4\n";
const std::string kInList = "the entry has been in list\n";
const std::string kOverlap = "Port overlap\n";

Fields Src(const std::string& ports) { return {{"SrcPort", ports}}; }
Fields MinMax(const std::string& min_port, const std::string& max_port)
{
    return {{"MinPort", min_port}, {"MaxPort", max_port}};
}

RowCheck With(const Fields& ports)
{
    RowCheck check = kCheck;
    check.good.insert(check.good.end(), ports.begin(), ports.end());
    return check;
}
}  // namespace

TEST(PortForward, FieldsInOrder)
{
    ResetRows();
    const RowCheck check = With(Src("8080"));
    check.ExpectEach({
        {"Protocol", kAccept, kSilent, "one or both", {"tcp", "udp", "tcpudp"}},
        {"Protocol", kRefuse, kProtocol, "no protocol of a port rule", {"TCP", "all", "", "tcpudp1"}},
        {"IP", kRefuse, kIpv4, "IP is another name of DestIPAddress", {"192.168.1.300"}},
        {"DestIPAddress", kRefuse, kIpv4, "no address of a host", {"", "127.0.0.1"}},
        {"DestPort", kAccept, kSilent, "the inner port is not judged", {"", "x"}},
    });
    check.Expect({
        {{{"Protocol", "x"}, {"SrcPort", "x"}}, kRefuse, kProtocol, "protocol first"},
        {{{"SrcPort", "x"}, {"DestIPAddress", "x"}}, kRefuse, kRange, "ports before the address"},
    });
    check.ExpectNothingBesideFields();
}

TEST(PortForward, ExternalPorts)
{
    ResetRows();
    kCheck.ExpectEach({
        {"SrcPort", kAccept, kSilent, "one port or a range", {"1", "65535", "1-65535", "100-100", "99-100"}},
        {"SrcPort", kAccept, kSilent, "nothing behind the last separator: one port", {"100-"}},
        {"SrcPort", kRefuse, kRange, "falling", {"200-100", "100-99"}},
        {"SrcPort", kRefuse, kRange, "out of range", {"0", "0-10", "65536", "1-65536"}},
        {"SrcPort", kRefuse, kRange, "would wrap to 80", {"4294967376", "18446744073709551696-65535"}},
        {"SrcPort", kRefuse, kRange, "leading zero", {"080", "1-02"}},
        {"SrcPort", kRefuse, kRange, "an empty part", {"-80", "-", "--", "1--2"}},
        {"SrcPort", kRefuse, kRange, "three parts", {"1-2-3", "1-2-x"}},
        {"SrcPort", kRefuse, kRange, "no port", {"1:2", "80,90", " 80", "+80", "http"}},
    });
}

TEST(PortForward, SrcPortIsBuiltInTheRow)
{
    ResetRows();
    const std::string wide(44, '1');
    const struct
    {
        Fields ports;
        int code;
        std::string own;
        std::string src_port;  // afterwards
        const char* why;
    } kCases[] = {
        {MinMax("100", "110"), kAccept, kSilent, "100-110", "both"},
        {MinMax("100", ""), kAccept, kSilent, "100", "no upper end"},
        {MinMax("100", "100"), kAccept, kSilent, "100-100", "both ends equal"},
        {MinMax("", "110"), kRefuse, kRange, "-110", "built and refused"},
        {MinMax("110", "100"), kRefuse, kRange, "110-100", "falling, built and refused"},
        {MinMax("", ""), kRefuse, kRange, "", "no port at all"},
        {MinMax("1-2", "3"), kRefuse, kRange, "1-2-3", "a range for a lower end"},
        {{{"SrcPort", "5"}, {"MinPort", "7"}, {"MaxPort", "9"}}, kAccept, kSilent, "5", "what is given stays"},
        {MinMax(wide, ""), kRefuse, kRange, wide, "fills the field to its last byte but one"},
        {MinMax(wide.substr(2), "1"), kRefuse, kRange, wide.substr(2) + "-1", "the longest that fits"},
        {MinMax(wide.substr(1), "1"), kRefuse, kRange, "", "one too long, nothing is written"},
        {MinMax(wide, wide), kRefuse, kRange, "", "far too long"},
    };
    for (const auto& c : kCases)
    {
        const std::string row = kCheck.Row(1, c.ports);
        const RowVerdict verdict = kCheck.Judge(row);
        EXPECT_EQ(verdict.code, c.code) << c.why;
        EXPECT_EQ(verdict.own, c.own) << c.why;
        std::string expected = row;
        expected.replace(139, c.src_port.size(), c.src_port);  // nothing but "SrcPort" changes
        EXPECT_EQ(verdict.row, expected) << c.why;
        EXPECT_EQ(kCheck.Text(verdict.row, "SrcPort"), c.src_port) << c.why;
    }
    for (const char* column : {"MinPort", "MaxPort"})
    {
        const std::string row = kCheck.Unended(column, '1');
        EXPECT_EQ(kCheck.Judge(row).row, row) << column << " without a zero byte does not fit";
    }
    EXPECT_EQ(kCheck.Judge(kCheck.Row(1, {{"Protocol", "x"}, {"MinPort", "1"}})).row,
              kCheck.Row(1, {{"Protocol", "x"}, {"MinPort", "1"}}))
        << "nothing is built for a row that is refused before";
}

TEST(PortForward, Overlap)
{
    struct OverlapCase
    {
        Fields stored;
        Fields proposed;
        bool overlap;
        const char* why;
    };
    const OverlapCase kCases[] = {
        {MinMax("150", "160"), MinMax("100", "200"), true, "stored range inside"},
        {MinMax("150", ""), MinMax("100", "200"), true, "stored port inside"},
        {MinMax("50", "100"), MinMax("100", "200"), true, "shares the lower end"},
        {MinMax("200", "300"), MinMax("100", "200"), true, "shares the upper end"},
        {MinMax("201", "300"), MinMax("100", "200"), false, "begins right behind"},
        {MinMax("50", "99"), MinMax("100", "200"), false, "ends right before"},
        {MinMax("50", "300"), MinMax("100", "200"), true, "stored range around"},
        {MinMax("100", "200"), MinMax("100", "200"), true, "the same range"},
        {MinMax("100", "200"), MinMax("100", ""), true, "port at the lower end"},
        {MinMax("100", "200"), MinMax("200", ""), true, "port at the upper end"},
        {MinMax("100", "200"), MinMax("99", ""), false, "port below"},
        {MinMax("100", "200"), MinMax("201", ""), false, "port above"},
        {MinMax("80", ""), MinMax("80", ""), true, "port and port"},
        {MinMax("80", ""), MinMax("81", ""), false, "port and next port"},
        {MinMax("9", ""), MinMax("10", "90"), false, "numbers are compared, not texts"},
        {Src("80"), Src("80"), true, "by SrcPort alone: the same port"},
        {Src("80"), Src("81"), false, "by SrcPort alone: not port 0 against port 0"},
        {Src("100-200"), Src("150"), true, "by SrcPort alone: port in range"},
        {Src("100-200"), Src("200-300"), true, "by SrcPort alone: shared end"},
        {Src("100-200"), Src("201-300"), false, "by SrcPort alone: apart"},
        {Src("100-200"), MinMax("150", "160"), true, "stored by SrcPort, proposed by the two"},
        {MinMax("100", "200"), Src("150"), true, "stored by the two, proposed by SrcPort"},
        {MinMax("100", "200"), Src("201"), false, "stored by the two, proposed by SrcPort, apart"},
        {Src(""), Src("1"), false, "a stored row without any port claims none"},
        {{{"SrcPort", "1-9"}, {"MinPort", "5"}}, Src("2"), false, "MinPort counts where there is one"},
    };
    for (const OverlapCase& c : kCases)
    {
        ResetRows();
        RowCheck stored = With(c.stored);
        kCheck.Store({stored.Row(
            3, {{"Protocol", "udp"}, {"DestIPAddress", "192.168.1.99"}, {"DestPort", "1"}, {"Interface", "other"}})});
        const RowVerdict verdict = kCheck.Judge(kCheck.Row(1, c.proposed));
        EXPECT_EQ(verdict.code, c.overlap ? kRefuse : kAccept) << c.why;
        EXPECT_EQ(verdict.own, c.overlap ? kOverlap : kSilent) << c.why << ", whatever protocol, host and interface";
        EXPECT_EQ(kCheck.Judge(kCheck.Row(3, c.proposed)).code, kAccept) << c.why << ", but never with itself";
    }
}

TEST(PortForward, DuplicatesComeBeforeOverlapsRowByRow)
{
    ResetRows();
    With(MinMax("100", "110")).ExpectWalk("no enough memory\n");
    const Fields built = {{"SrcPort", "100-110"}, {"MinPort", "100"}, {"MaxPort", "110"}};
    kCheck.Store({kCheck.Row(4, built)});
    const RowCheck check = With(MinMax("100", "110"));
    check.Expect(
        {
            {{}, kRefuse, kInList, "the row as it was stored, built again"},
            {{{"DestPort", "81"}}, kRefuse, kOverlap, "another inner port, the same outer ones"},
            {{{"Protocol", "udp"}}, kRefuse, kOverlap, "another protocol"},
            {{{"DestIPAddress", "192.168.1.2"}}, kRefuse, kOverlap, "another host"},
            {{{"MinPort", "111"}, {"MaxPort", "120"}}, kAccept, kSilent, "other ports"},
        },
        true);
    kCheck.Store({kCheck.Row(2, {{"MinPort", "105"}, {"DestPort", "1"}}), kCheck.Row(4, built)});
    EXPECT_EQ(check.Judge(check.Row(1)).own, kOverlap) << "the first stored row decides";
    EXPECT_EQ(check.Judge(check.Row(4)).own, kOverlap) << "a stored rule moved onto another";
}

TEST(PortForward, LinesInOrder)
{
    ResetRows();
    kCheck.Store({With(Src("20")).Row(2)});
    const std::vector<std::string> expected = {
        "validIpv4: validstart\n",
        "validIpv4: [192.168.1.20] is valid IPv4\n",
        "securityPortForwardListValid: Port overlap\n",
    };
    EXPECT_EQ(kCheck.Judge(kCheck.Row(1, Src("10-30"))).lines, expected);
    const std::vector<std::string> refused = {
        "validPortRange: port(07) first char must not be \"0\" \n",
        "securityPortForwardListValid: invalid port range\n",
    };
    EXPECT_EQ(kCheck.Judge(kCheck.Row(1, Src("07-30"))).lines, refused);
}
}  // namespace kobd::test
