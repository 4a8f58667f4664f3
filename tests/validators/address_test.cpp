// Addresses and masks.
#include "validators/address.h"

#include <gtest/gtest.h>

#include "tests/validators/codes.h"

namespace kobd::test
{
namespace
{
const std::string kLongNumber(300, '1');
}

TEST(ValidIpv4, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"10.0.0.1", kTakes, "private address"},
        {"192.168.1.255", kTakes, "broadcast addresses are no matter of form"},
        {"1.0.0.0", kTakes, "lowest first part"},
        {"126.255.255.255", kTakes, "just below the loopback"},
        {"128.0.0.0", kTakes, "just above the loopback"},
        {"223.255.255.255", kTakes, "last of class C"},
        {"224.0.0.1", kTakes, "multicast is not told apart"},
        {"255.255.255.254", kTakes, "only all ones is refused"},
        {"255.0.0.255", kTakes, "parts are judged one by one"},
        {"1.0.0.1", kTakes, "a lone 0 is no leading zero"},
        {"0.0.0.0", kRefuses, "no address"},
        {"255.255.255.255", kRefuses, "limited broadcast"},
        {"0.1.2.3", kRefuses, "first part 0"},
        {"127.0.0.1", kRefuses, "loopback"},
        {"127.255.255.255", kRefuses, "all of the loopback"},
        {"01.2.3.4", kRefuses, "leading zero in front"},
        {"1.2.3.04", kRefuses, "leading zero at the end"},
        {"1.02.3.4", kRefuses, "leading zero within"},
        {"1.2.00.4", kRefuses, "two zeros"},
        {"256.1.1.1", kRefuses, "first part too large"},
        {"1.256.1.1", kRefuses, "second part too large"},
        {"1.1.1.256", kRefuses, "last part too large"},
        {"1.1.1.999", kRefuses, "three digits that are none"},
        {"1.1.1.4294967297", kRefuses, "would wrap to 1 in 32 bits"},
        {"18446744073709551617.1.1.1", kRefuses, "would wrap to 1 in 64 bits"},
        {"1.2.3", kRefuses, "three parts"},
        {"1.2.3.", kRefuses, "an empty last part"},
        {".1.2.3", kRefuses, "an empty first part"},
        {"1..2.3", kRefuses, "an empty part within"},
        {"1.2.3.4.", kRefuses, "a dot too many"},
        {"1.2.3.4.5", kRefuses, "five parts"},
        {"...", kRefuses, "dots alone"},
        {"", kRefuses, "empty"},
        {"1", kRefuses, "a number"},
        {" 1.2.3.4", kRefuses, "a blank in front"},
        {"1.2.3.4 ", kRefuses, "a blank behind"},
        {"1.2.3.4\n", kRefuses, "a line end behind"},
        {"1. 2.3.4", kRefuses, "a blank within"},
        {"+1.2.3.4", kRefuses, "a sign"},
        {"1.-2.3.4", kRefuses, "a negative part"},
        {"0x1.2.3.4", kRefuses, "hexadecimal"},
        {"1.2.3.a", kRefuses, "a letter"},
        {"1,2,3,4", kRefuses, "commas"},
        {"1.2.3.4/24", kRefuses, "a prefix"},
        {"1.2.3.4:80", kRefuses, "a port"},
        {"::1", kRefuses, "IPv6"},
        {"1.2.3.\xD9\xA4", kRefuses, "digits of other scripts"},
        {"%s.%n.%s.%n", kRefuses, "a value is data, never a format"},
        {"1.2.3." + kLongNumber, kRefuses, "longer than the working copy"},
        {std::string(255, '.'), kRefuses, "as many dots as the copy holds"},
    };
    ExpectCodes(CHECK(validIpv4), cases);
}

TEST(ValidIpv6, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"::", kTakes, "unspecified"},
        {"::1", kTakes, "loopback"},
        {"2001:db8::1", kTakes, "documentation prefix"},
        {"2001:DB8:0:0:8:800:200C:417A", kTakes, "full form, capitals"},
        {"2001:db8::8:800:200c:417a", kTakes, "zeros left out within"},
        {"fe80::", kTakes, "zeros left out at the end"},
        {"1:2:3:4:5:6:7::", kTakes, "one group left out at the end"},
        {"::2:3:4:5:6:7:8", kTakes, "one group left out in front"},
        {"::ffff:192.0.2.1", kTakes, "an IPv4 address within"},
        {"1:2:3:4:5:6:192.0.2.1", kTakes, "six groups and an IPv4 address"},
        {"0001:0002::", kTakes, "leading zeros up to four digits"},
        {"", kRefuses, "empty"},
        {":", kRefuses, "one colon"},
        {":::", kRefuses, "three colons"},
        {"1::2::3", kRefuses, "zeros left out twice"},
        {"1:2:3:4:5:6:7", kRefuses, "seven groups"},
        {"1:2:3:4:5:6:7:8:9", kRefuses, "nine groups"},
        {"1:2:3:4:5:6:7:8::", kRefuses, "nothing left to leave out"},
        {"1::2:3:4:5:6:7:8", kRefuses, "nothing left out"},
        {"12345::", kRefuses, "five digits"},
        {"g::1", kRefuses, "no hexadecimal digit"},
        {":1:2:3:4:5:6:7", kRefuses, "a lone colon in front"},
        {"1:2:3:4:5:6:7:", kRefuses, "a lone colon behind"},
        {"::ffff:192.0.2.256", kRefuses, "an IPv4 address that is none"},
        {"::ffff:192.0.2.01", kRefuses, "leading zero in the IPv4 address"},
        {"::1.2.3", kRefuses, "a short IPv4 address"},
        {"1:2:3:4:5:6:7:192.0.2.1", kRefuses, "an IPv4 address too far behind"},
        {"192.0.2.1", kRefuses, "IPv4"},
        {"fe80::1%eth0", kRefuses, "a zone"},
        {"[::1]", kRefuses, "brackets"},
        {"::1/64", kRefuses, "a prefix"},
        {" ::1", kRefuses, "a blank in front"},
        {"::1 ", kRefuses, "a blank behind"},
        {std::string(8000, ':'), kRefuses, "long"},
    };
    ExpectCodes(CHECK(validIpv6), cases);
}

TEST(ValidIp, Predicate)
{
    const std::vector<CodeCase> cases = {
        {"10.255.255.255", kYes, "a class boundary only for 126, 191 and 223"},
        {"2.0.0.0", kYes, "a class boundary only for 1, 128 and 192"},
        {"1.0.0.1", kYes, "one above the lowest"},
        {"126.255.255.254", kYes, "one below the highest of class A"},
        {"128.0.0.1", kYes, "one above the lowest of class B"},
        {"191.255.255.254", kYes, "one below the highest of class B"},
        {"192.0.0.1", kYes, "one above the lowest of class C"},
        {"223.255.255.254", kYes, "one below the highest of class C"},
        {"126.0.0.0", kYes, "the lowest of another network"},
        {"191.0.255.255", kYes, "not all parts at the boundary"},
        {"10.010.0.1", kYes, "octal parts are read"},
        {"10.0x10.0.1", kYes, "hexadecimal parts are read"},
        {"1.0.0.0", kNo, "lowest of class A"},
        {"126.255.255.255", kNo, "highest of class A"},
        {"128.0.0.0", kNo, "lowest of class B"},
        {"191.255.255.255", kNo, "highest of class B"},
        {"192.0.0.0", kNo, "lowest of class C"},
        {"223.255.255.255", kNo, "highest of class C"},
        {"127.0.0.1", kNo, "loopback"},
        {"0.1.2.3", kNo, "network 0"},
        {"224.0.0.1", kNo, "multicast"},
        {"240.0.0.1", kNo, "reserved"},
        {"255.255.255.255", kNo, "limited broadcast"},
        {"0x0A.0.0.1", kNo, "a first part that is no decimal number"},
        {"0300.0.0.1", kNo, "192 in octal, 300 as a decimal number"},
        {"10.1", kNo, "two parts"},
        {"10.1.1", kNo, "three parts"},
        {"167772161", kNo, "one number"},
        {"10.0.0.256", kNo, "a part too large"},
        {"10.0.0.09", kNo, "no octal digit"},
        {"10.0.0.1.", kNo, "a dot too many"},
        {"10.0.0.1.1", kNo, "five parts"},
        {"10..0.1", kNo, "an empty part"},
        {"", kNo, "empty"},
        {" 10.0.0.1", kNo, "a blank in front"},
        {"10.0.0.1 ", kNo, "a blank behind, which one C library ignores"},
        {"10.0.0.1 x", kNo, "and what follows it"},
        {"10.0.0.1\n", kNo, "a line end too"},
        {"10.0.0.000000000001", kYes, "the longest that fits the working copy"},
        {"10.0.0.0000000000001", kNo, "one character too long"},
        {std::string(8000, '1'), kNo, "long"},
    };
    ExpectCodes(CHECK(validIp), cases);
}

TEST(ValidIpInput, Predicate)
{
    const std::vector<CodeCase> cases = {
        {"", kYes, "nothing is allowed"},
        {"10.0.0.1", kYes, "an address"},
        {"10.0.0.1/32", kYes, "longest prefix"},
        {"10.0.0.1/0", kYes, "shortest prefix"},
        {"10.0.0.1/9", kYes, "one digit"},
        {"10.0.0.1/33", kNo, "one above"},
        {"10.0.0.1/99", kNo, "two digits"},
        {"10.0.0.1/100", kNo, "three digits"},
        {"10.0.0.1/08", kNo, "leading zero"},
        {"10.0.0.1/", kNo, "no prefix"},
        {"10.0.0.1/a", kNo, "no number"},
        {"10.0.0.1/-1", kNo, "negative"},
        {"10.0.0.1/24/24", kNo, "two prefixes"},
        {"127.0.0.1", kNo, "loopback"},
        {"127.0.0.1/8", kNo, "loopback with a prefix"},
        {"1.0.0.0/8", kNo, "the address is judged as without a prefix"},
        {"010.0.0.1", kNo, "decimal without leading zeros here"},
        {"10.0.0.1x", kNo, "a letter behind"},
        {"10x0x0x1", kNo, "any character for a dot in the form, but no address"},
        {"1234567", kNo, "digits for dots in the form"},
        {"10.0.0/1/8", kNo, "a slash for a dot in the form"},
        {"10.0.0.1000", kNo, "four digits"},
        {" 10.0.0.1", kNo, "a blank"},
        {"::1", kNo, "IPv6"},
        {"/24", kNo, "a prefix alone"},
        {std::string(8000, '1'), kNo, "long"},
    };
    ExpectCodes(CHECK(validIpInput), cases);
}

TEST(ValidMask, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"255.255.255.0", kTakes, "24 bits"},
        {"255.255.0.0", kTakes, "16 bits"},
        {"255.0.0.0", kTakes, "8 bits"},
        {"128.0.0.0", kTakes, "1 bit"},
        {"255.255.255.254", kTakes, "31 bits"},
        {"255.255.254.0", kTakes, "within a part"},
        {"255.240.0.0", kTakes, "12 bits"},
        {"255.255.255.255", kRefuses, "32 bits: no IPv4 text to validIpv4"},
        {"0.0.0.0", kRefuses, "0 bits: nor this"},
        {"255.255.0.255", kRefuses, "a gap of a part"},
        {"255.0.255.0", kRefuses, "a gap and an end"},
        {"255.255.255.1", kRefuses, "a gap within a part"},
        {"255.255.255.253", kRefuses, "a gap of one bit"},
        {"254.255.0.0", kRefuses, "a gap in front"},
        {"1.0.0.0", kRefuses, "does not begin at the top"},
        {"127.0.0.0", kRefuses, "nor this"},
        {"255.255.255.00", kRefuses, "leading zero"},
        {"255.255.255", kRefuses, "three parts"},
        {"255.255.256.0", kRefuses, "a part too large"},
        {"24", kRefuses, "a prefix"},
        {"", kRefuses, "empty"},
        {"ffff:ffff::", kRefuses, "IPv6"},
        {"::", kRefuses, "IPv6 that reads as no number"},
    };
    ExpectCodes(CHECK(validMask), cases);
}

TEST(ValidMac, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"00:11:22:33:44:55", kTakes, "colons"},
        {"00-11-22-33-44-55", kTakes, "dashes"},
        {"aa:BB:cC:Dd:ee:F0", kTakes, "either case"},
        {"00:00:00:00:00:00", kTakes, "all zeros"},
        {"ff-ff-ff-ff-ff-ff", kTakes, "broadcast is known by its colons"},
        {"ff:ff:ff:ff:ff:fe", kTakes, "one below"},
        {"01:00:5e:00:00:01", kTakes, "multicast is not told apart"},
        {"ff:ff:ff:ff:ff:ff", kRefuses, "broadcast"},
        {"FF:FF:ff:Ff:fF:FF", kRefuses, "broadcast in any case"},
        {"00:11-22:33:44:55", kRefuses, "mixed separators"},
        {"00-11-22-33-44:55", kRefuses, "mixed at the end"},
        {"00.11.22.33.44.55", kRefuses, "dots"},
        {"001122334455", kRefuses, "none"},
        {"00:11:22:33:44:5", kRefuses, "a digit short"},
        {"00:11:22:33:44:555", kRefuses, "a digit too many"},
        {"00:11:22:33:44", kRefuses, "five pairs"},
        {"00:11:22:33:44:55:66", kRefuses, "seven pairs"},
        {"0:11:22:33:44:055", kRefuses, "pairs of other lengths"},
        {"0g:11:22:33:44:55", kRefuses, "no hexadecimal digit"},
        {"00:11:22:33:44:5:", kRefuses, "separator for a digit"},
        {":::::::::::::::::", kRefuses, "separators alone"},
        {" 0:11:22:33:44:55", kRefuses, "a blank for a digit"},
        {"", kRefuses, "empty"},
        {"00", kRefuses, "shorter than the first separator"},
        {std::string(17, 'a'), kRefuses, "digits alone"},
    };
    ExpectCodes(CHECK(validMac), cases);
}

TEST(ValidIpRange, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"10.0.0.0/8", kTakes, "IPv4"},
        {"10.0.0.0/1", kTakes, "shortest"},
        {"10.0.0.0/32", kTakes, "longest"},
        {"2001:db8::/32", kTakes, "IPv6, with the same limit"},
        {"10.0.0.0/08", kTakes, "digits"},
        {"10.0.0.0/0", kRefuses, "no prefix at all"},
        {"10.0.0.0/33", kRefuses, "one above"},
        {"2001:db8::/64", kRefuses, "above for IPv6 as well"},
        {"10.0.0.0/4294967304", kRefuses, "would wrap to 8"},
        {"10.0.0.0/8 ", kRefuses, "a blank behind"},
        {"10.0.0.0/8/8", kRefuses, "two prefixes"},
        {"10.0.0.0/+8", kRefuses, "a sign"},
        {"10.0.0.0/ 8", kRefuses, "a blank in front"},
        {"10.0.0.0/a", kRefuses, "no number"},
        {"10.0.0.0/8a", kRefuses, "a letter behind"},
        {"10.0.0.0/", kRefuses, "empty prefix"},
        {"10.0.0.0", kRefuses, "no slash"},
        {"2001:db8::", kRefuses, "no slash, IPv6"},
        {"/8", kRefuses, "no address"},
        {"/", kRefuses, "neither"},
        {"", kRefuses, "empty"},
        {"127.0.0.0/8", kRefuses, "loopback"},
        {"10.0.0.0 /8", kRefuses, "a blank within"},
        {"10.0.0.0/" + std::string(1015, '0') + "8", kRefuses, "beyond the copy"},
        {"10.0.0.0/" + std::string(1013, '0') + "8", kTakes, "fills the copy"},
    };
    ExpectCodes(CHECK(validIpRange), cases);
}

TEST(ValidAddressExzerobc, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"10.1.2.3", kTakes, "a host"},
        {"10.1.2.255", kTakes, "only 0 is refused"},
        {"10.0.0.10", kTakes, "ends in the digit 0"},
        {"10.1.2.0", kRefuses, "last part 0"},
        {"127.0.0.1", kRefuses, "loopback"},
        {"10.1.2", kRefuses, "no address"},
        {"example.com", kRefuses, "a name"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validAddressExzerobc), cases);
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
