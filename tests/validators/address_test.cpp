// Addresses and masks.
#include "validators/address.h"

#include <gtest/gtest.h>

#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::vector<TextsByCode> kIpv4 = {
    {kTakes, "addresses", {"10.0.0.1", "1.0.0.1"}},
    {kTakes, "neither broadcast nor multicast is a matter of form", {"192.168.1.255", "224.0.0.1", "255.255.255.254"}},
    {kTakes, "edges of the first part", {"1.0.0.0", "126.255.255.255", "128.0.0.0", "223.255.255.255", "255.0.0.255"}},
    {kRefuses, "no host's address", {"0.0.0.0", "255.255.255.255", "0.1.2.3", "127.0.0.1", "127.255.255.255"}},
    {kRefuses, "leading zeros", {"01.2.3.4", "1.2.3.04", "1.02.3.4", "1.2.00.4"}},
    {kRefuses, "a part too large", {"256.1.1.1", "1.256.1.1", "1.1.1.256", "1.1.1.999"}},
    {kRefuses, "would wrap in 32 or 64 bits", {"1.1.1.4294967297", "18446744073709551617.1.1.1"}},
    {kRefuses, "not four parts", {"1.2.3", "1.2.3.4.5", "1", ""}},
    {kRefuses, "an empty part", {"1.2.3.", ".1.2.3", "1..2.3", "1.2.3.4.", "..."}},
    {kRefuses, "a blank", {" 1.2.3.4", "1.2.3.4 ", "1.2.3.4\n", "1. 2.3.4"}},
    {kRefuses, "more than digits", {"+1.2.3.4", "1.-2.3.4", "0x1.2.3.4", "1.2.3.a", "1.2.3.\xD9\xA4"}},
    {kRefuses, "another form", {"1,2,3,4", "1.2.3.4/24", "1.2.3.4:80", "::1"}},
    {kRefuses, "a value is data, never a format", {"%s.%n.%s.%n"}},
    {kRefuses, "longer than the working copy", {"1.2.3." + std::string(300, '1'), std::string(255, '.')}},
};

const std::vector<TextsByCode> kIpv6 = {
    {kTakes, "full", {"2001:DB8:0:0:8:800:200C:417A", "0001:0002:3:4:5:6:7:8"}},
    {kTakes, "zeros left out", {"::", "::1", "2001:db8::1", "2001:db8::8:800:200c:417a", "fe80::", "0001:0002::"}},
    {kTakes, "one group left out", {"1:2:3:4:5:6:7::", "::2:3:4:5:6:7:8"}},
    {kTakes, "an IPv4 address within", {"::ffff:192.0.2.1", "1:2:3:4:5:6:192.0.2.1"}},
    {kRefuses, "colons alone", {"", ":", ":::", std::string(8000, ':')}},
    {kRefuses, "a lone colon at an end", {":1:2:3:4:5:6:7", "1:2:3:4:5:6:7:"}},
    {kRefuses, "zeros left out twice, or where none are missing", {"1::2::3", "1:2:3:4:5:6:7:8::", "1::2:3:4:5:6:7:8"}},
    {kRefuses, "not eight groups", {"1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9"}},
    {kRefuses, "a group that is none", {"12345::", "g::1"}},
    {kRefuses, "an IPv4 address that is none", {"::ffff:192.0.2.256", "::ffff:192.0.2.01", "::1.2.3"}},
    {kRefuses, "an IPv4 address too far behind, or alone", {"1:2:3:4:5:6:7:192.0.2.1", "192.0.2.1"}},
    {kRefuses, "zone, brackets, prefix, blank", {"fe80::1%eth0", "[::1]", "::1/64", " ::1", "::1 "}},
};

const std::vector<TextsByCode> kIp = {
    {kYes, "boundaries of other classes", {"10.255.255.255", "2.0.0.0", "126.0.0.0", "191.0.255.255"}},
    {kYes, "one inside a class", {"1.0.0.1", "126.255.255.254", "128.0.0.1", "191.255.255.254", "192.0.0.1"}},
    {kYes, "one below the highest", {"223.255.255.254"}},
    {kYes, "octal and hexadecimal parts are read", {"10.010.0.1", "10.0x10.0.1"}},
    {kNo, "ends of a class", {"1.0.0.0", "126.255.255.255", "128.0.0.0", "191.255.255.255", "192.0.0.0"}},
    {kNo, "the highest", {"223.255.255.255"}},
    {kNo, "no host's address", {"127.0.0.1", "0.1.2.3", "224.0.0.1", "240.0.0.1", "255.255.255.255"}},
    {kNo, "a first part that is no decimal number, or 192 in octal", {"0x0A.0.0.1", "0300.0.0.1"}},
    {kNo, "not four parts", {"10.1", "10.1.1", "167772161", "10.0.0.1.", "10.0.0.1.1", "10..0.1", ""}},
    {kNo, "a part that is none", {"10.0.0.256", "10.0.0.09"}},
    {kNo, "a blank, which one C library ignores behind", {" 10.0.0.1", "10.0.0.1 ", "10.0.0.1 x", "10.0.0.1\n"}},
    {kYes, "the longest that fits the working copy", {"10.0.0.000000000001"}},
    {kNo, "too long", {"10.0.0.0000000000001", std::string(8000, '1')}},
};

const std::vector<TextsByCode> kIpInput = {
    {kYes, "nothing, an address, and one with a prefix", {"", "10.0.0.1", "10.0.0.1/32", "10.0.0.1/0", "10.0.0.1/9"}},
    {kNo, "a prefix too long", {"10.0.0.1/33", "10.0.0.1/99", "10.0.0.1/100"}},
    {kNo, "no prefix", {"10.0.0.1/08", "10.0.0.1/", "10.0.0.1/a", "10.0.0.1/-1", "10.0.0.1/24/24", "/24"}},
    {kNo, "an address that validIp refuses", {"127.0.0.1", "127.0.0.1/8", "1.0.0.0/8", "10.0.0.1000", "::1"}},
    {kNo, "decimal without leading zeros here", {"010.0.0.1"}},
    {kNo, "any character for a dot in the form, but no address", {"10x0x0x1", "1234567", "10.0.0/1/8"}},
    {kNo, "more beside it", {"10.0.0.1x", " 10.0.0.1", std::string(8000, '1')}},
};

const std::vector<TextsByCode> kMask = {
    {kTakes, "from the top", {"255.255.255.0", "255.255.0.0", "255.0.0.0", "128.0.0.0", "255.255.255.254"}},
    {kTakes, "ending within a part", {"255.255.254.0", "255.240.0.0"}},
    {kRefuses, "all or none, no IPv4 texts to validIpv4", {"255.255.255.255", "0.0.0.0"}},
    {kRefuses, "a gap", {"255.255.0.255", "255.0.255.0", "255.255.255.1", "255.255.255.253", "254.255.0.0"}},
    {kRefuses, "not from the top", {"1.0.0.0", "127.0.0.0"}},
    {kRefuses, "no IPv4 text", {"255.255.255.00", "255.255.255", "255.255.256.0", "24", "", "ffff:ffff::", "::"}},
};

const std::vector<TextsByCode> kMac = {
    {kTakes, "colons or dashes, either case", {"00:11:22:33:44:55", "00-11-22-33-44-55", "aa:BB:cC:Dd:ee:F0"}},
    {kTakes,
     "zeros, multicast and one below broadcast",
     {"00:00:00:00:00:00", "01:00:5e:00:00:01", "ff:ff:ff:ff:ff:fe"}},
    {kTakes, "broadcast is known by its colons", {"ff-ff-ff-ff-ff-ff"}},
    {kRefuses, "broadcast in any case", {"ff:ff:ff:ff:ff:ff", "FF:FF:ff:Ff:fF:FF"}},
    {kRefuses,
     "mixed or other separators",
     {"00:11-22:33:44:55", "00-11-22-33-44:55", "00.11.22.33.44.55", "001122334455", std::string(17, 'a')}},
    {kRefuses,
     "not six pairs",
     {"00:11:22:33:44:5", "00:11:22:33:44:555", "00:11:22:33:44", "00:11:22:33:44:55:66", "0:11:22:33:44:055"}},
    {kRefuses,
     "no digit",
     {"0g:11:22:33:44:55", "00:11:22:33:44:5:", ":::::::::::::::::", " 0:11:22:33:44:55", "", "00"}},
};

const std::vector<TextsByCode> kIpRange = {
    {kTakes, "IPv4, shortest and longest prefix", {"10.0.0.0/8", "10.0.0.0/1", "10.0.0.0/32", "10.0.0.0/08"}},
    {kTakes, "IPv6, with the same limit", {"2001:db8::/32"}},
    {kRefuses, "prefix out of range", {"10.0.0.0/0", "10.0.0.0/33", "2001:db8::/64", "10.0.0.0/4294967304"}},
    {kRefuses,
     "no prefix",
     {"10.0.0.0/8 ", "10.0.0.0/8/8", "10.0.0.0/+8", "10.0.0.0/ 8", "10.0.0.0/a", "10.0.0.0/8a", "10.0.0.0/"}},
    {kRefuses, "no slash", {"10.0.0.0", "2001:db8::", ""}},
    {kRefuses, "no address", {"/8", "/", "127.0.0.0/8", "10.0.0.0 /8"}},
    {kRefuses, "beyond the copy", {"10.0.0.0/" + std::string(1015, '0') + "8"}},
    {kTakes, "fills the copy", {"10.0.0.0/" + std::string(1013, '0') + "8"}},
};

const std::vector<TextsByCode> kAddressExzerobc = {
    {kTakes, "only a last part of 0 is refused", {"10.1.2.3", "10.1.2.255", "10.0.0.10"}},
    {kRefuses, "last part 0", {"10.1.2.0"}},
    {kRefuses, "no address", {"127.0.0.1", "10.1.2", "example.com", ""}},
};
}  // namespace

TEST(AddressChecks, TakeAndRefuse)
{
    ExpectCodes(CHECK(validIpv4), kIpv4);
    ExpectCodes(CHECK(validIpv6), kIpv6);
    ExpectCodes(CHECK(validIp), kIp);
    ExpectCodes(CHECK(validIpInput), kIpInput);
    ExpectCodes(CHECK(validMask), kMask);
    ExpectCodes(CHECK(validMac), kMac);
    ExpectCodes(CHECK(validIpRange), kIpRange);
    ExpectCodes(CHECK(validAddressExzerobc), kAddressExzerobc);
}

TEST(AddressChecks, SayWhatTheyFound)
{
    const std::vector<LogCase> cases = {
        {CHECK(validIpv4), "10.0.0.1", "0|validstart\n|[10.0.0.1] is valid IPv4\n"},
        {CHECK(validIpv4), "0.0.0.0", "2|validstart\n|[0.0.0.0] is invalid IPv4\n"},
        {CHECK(validIpv4), "01.2.3.4", "2|validstart\n|[01.2.3.4] is invalid IPv4\n"},
        {CHECK(validIpv4), "", "2|validstart\n|[] is invalid IPv4\n"},
        {CHECK(validIpv4), "%s%n", "2|validstart\n|[%s%n] is invalid IPv4\n"},
        {CHECK(validIpv6), "::1", "0|[::1] is valid IPv6\n"},
        {CHECK(validIpv6), "::g", "2|[::g] is invalid IPv6\n"},
        {CHECK(validIp), "10.0.0.1", "1"},
        {CHECK(validIp), "1.2.3.4.5", "0|input[1.2.3.4.5] not ip addr"},
        {CHECK(validIp), "255.255.255.255", "0|input[255.255.255.255] not ip addr"},
        {CHECK(validIp), "1.0.0.0", "0|[1.0.0.0] invalid ip"},
        {CHECK(validIp), "127.0.0.1", "0|[127.0.0.1] invalid ip"},
        {CHECK(validIp), "192.0.0.0", "0"},
        {CHECK(validIpInput), "", "1"},
        {CHECK(validIpInput), "x", "0"},
        {CHECK(validIpInput), "10.0.0.1", "1"},
        {CHECK(validIpInput), "127.0.0.1", "0|validIp: [127.0.0.1] invalid ip|not valid ip:127.0.0.1"},
        {CHECK(validIpInput), "10.0.0.1/24", "1|midSeparate[0] : 10.0.0.1|midSeparate[1] : 24"},
        {CHECK(validIpInput), "192.0.0.0/24", "0|midSeparate[0] : 192.0.0.0|midSeparate[1] : 24|not valid separate ip"},
        {CHECK(validIpInput), "10.0.0.1/33", "0|midSeparate[0] : 10.0.0.1|midSeparate[1] : 33|not valid mask"},
        {CHECK(validMask), "255.255.255.0",
         "0|validIpv4: validstart\n|validIpv4: [255.255.255.0] is valid IPv4\n|[255.255.255.0] is valid mask\n"},
        {CHECK(validMask), "255.0.255.0",
         "2|validIpv4: validstart\n|validIpv4: [255.0.255.0] is valid IPv4\n|[255.0.255.0] is invalid mask\n"},
        {CHECK(validMask), "0.0.0.0",
         "2|validIpv4: validstart\n|validIpv4: [0.0.0.0] is invalid IPv4\n|validIpv6: [0.0.0.0] is invalid IPv6\n"},
        {CHECK(validMask), "ffff::",
         "2|validIpv4: validstart\n|validIpv4: [ffff::] is invalid IPv4\n|validIpv6: [ffff::] is valid IPv6\n"
         "|[ffff::] is invalid mask\n"},
        {CHECK(validMac), "FF:ff:ff:ff:ff:ff", "2|[FF:ff:ff:ff:ff:ff] is invalid mac\n"},
        {CHECK(validMac), "no", "2"},
        {CHECK(validMac), "00:11:22:33:44:55", "0"},
        {CHECK(validIpRange), "1.2.3.4/8", "0|validIpv4: validstart\n|validIpv4: [1.2.3.4] is valid IPv4\n"},
        {CHECK(validAddressExzerobc), "1.2.3.0", "2|validIpv4: validstart\n|validIpv4: [1.2.3.0] is valid IPv4\n"},
    };
    ExpectLogs(cases);
}
}  // namespace kobd::test
