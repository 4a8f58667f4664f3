// Ports, protocols, keys, blanks and lists of bands.
#include <gtest/gtest.h>

#include "tests/validators/judge.h"
#include "validators/band_lock.h"
#include "validators/port.h"
#include "validators/service.h"
#include "validators/texts.h"

namespace kobd::test
{
namespace
{
std::string BandList(int count, const char* separator)
{
    std::string list;
    for (int band = 1; band <= count; ++band) list += std::to_string(band) + separator;
    return list;
}
}  // namespace

TEST(ValidPortRange, SaysWhatIsWrong)
{
    ExpectCodes(CHECK(validPortRange), {{kTakes, "ports", {"1", "65535", "80"}}});
    const std::string highest = "2|port(2147483647) must be 1-65535 \n";
    std::vector<LogCase> cases = {
        {CHECK(validPortRange), "80", "0"},
        {CHECK(validPortRange), "65536", "2|port(65536) must be 1-65535 \n"},
        {CHECK(validPortRange), "0", "2|port(0) first char must not be \"0\" \n"},
        {CHECK(validPortRange), "080", "2|port(080) first char must not be \"0\" \n"},
    };
    for (const char* wraps : {"3000000000", "4294967376", "18446744073709551696", "111111111111111111111111"})
        cases.push_back({CHECK(validPortRange), wraps, highest});
    cases.push_back({CHECK(validPortRange), std::string(300, '1'), highest});
    for (const std::string text : {"", "80a", "-1", "+80", " 80", "80-81", "0x50"})
        cases.push_back({CHECK(validPortRange), text, "2|port(" + text + ") must be digits \n"});
    ExpectLogs(cases);
}

TEST(ValidPortFormat, Predicate)
{
    ExpectCodes(CHECK(validPortFormat),
                {{kYes, "a port, a rising range", {"1", "65535", "1-65535", "80-81"}},
                 {kNo, "no port", {"0", "65536", "100000", "080", "80\n", "", std::string(8000, '1')}},
                 {kNo, "half a range, or more", {"80-", "-80", "-", "80-81-82", "80:81", "80 - 81", "80-081"}}});
    const std::string wrong = "|not valid separate port range";
    ExpectLogs({
        {CHECK(validPortFormat), "80-81", "1"},
        {CHECK(validPortFormat), "80-80", "0|0:80   1:80" + wrong},
        {CHECK(validPortFormat), "81-80", "0|0:81   1:80" + wrong},
        {CHECK(validPortFormat), "0-80", "0|0:0   1:80" + wrong},
        {CHECK(validPortFormat), "80-65536", "0|0:80   1:65536" + wrong},
        {CHECK(validPortFormat), "99999-99999", "0|0:99999   1:99999" + wrong},
        {CHECK(validPortFormat), "80-081", "0"},
    });
}

TEST(ValidProtocol, Predicate)
{
    ExpectCodes(CHECK(validProtocol), {{kYes, "the five", {"all", "tcp", "udp", "tcpudp", "icmp"}},
                                       {kNo, "a beginning, more behind", {"tc", "tcp ", "tcp,udp"}},
                                       {kNo, "others", {"TCP", "udptcp", "", "6"}}});
}

TEST(ValidWifiPassword, TakesAndRefuses)
{
    ExpectCodes(CHECK(validWifiPassword), {{kTakes, "the length is not judged here", {"secret12", "", "0"}},
                                           {kTakes, "0x not in front", {"x0x", "00x1"}},
                                           {kTakes, "any byte but the space", {"tab\there", "\xC3\xA9t\xC3\xA9"}},
                                           {kRefuses, "hexadecimal", {"0x12345678", "0X12345678", "0x"}},
                                           {kRefuses, "a space", {"two words", " leading", "trailing "}}});
}

TEST(Trim, RemovesBlanksAtBothEnds)
{
    const struct
    {
        const char* text;
        const char* trimmed;
    } kCases[] = {
        {"", ""},         {" ", ""},    {" \t \t", ""},       {"a", "a"},
        {" a", "a"},      {"a\t", "a"}, {"\t a b \t", "a b"}, {"\na\n", "\na\n"},
        {"  abc", "abc"},
    };
    for (const auto& c : kCases)
    {
        std::vector<char> text = ExactText(c.text);
        Trim(text.data());
        EXPECT_STREQ(text.data(), c.trimmed);
    }
}

TEST(ValidBandLock, TakesAndRefuses)
{
    const std::string bands = "1 3 5 7 8 20 28 38 40 41";
    const std::string many = BandList(20, " ");
    const struct
    {
        std::string supported;
        int code;
        const char* why;
        std::vector<std::string> values;
    } kCases[] = {
        {bands, kTakes, "some, the last, any order", {"3;7;20;", "41;", "7;3;"}},
        {bands, kTakes, "no lock", {""}},
        {"", kTakes, "no lock, no bands", {""}},
        {many, kTakes, "16 bands", {BandList(16, ";")}},
        {many, kRefuses, "17 bands", {BandList(17, ";")}},
        {bands, kRefuses, "no end", {"3;7", ";"}},
        {bands, kRefuses, "twice", {"3;3;", "3;7;3;"}},
        {bands, kRefuses, "not supported: another, a beginning of 20 and 28, compared as texts", {"3;4;", "2;", "03;"}},
        {bands, kRefuses, "an empty band", {"3;;7;", ";3;", "3;;", ";;"}},
        {bands, kRefuses, "another separator, two supported ones with their blank", {" 3;", "3,7;", "1 3;"}},
        {"", kRefuses, "nothing supported", {"3;"}},
        {"   ", kRefuses, "blanks only", {"3;"}},
        {"  3   7 ", kTakes, "blanks count once", {"3;7;"}},
        {BandList(64, " "), kTakes, "the 64th supported band", {"64;"}},
        {BandList(65, " "), kRefuses, "no band beyond it counts", {"65;"}},
        {"1 " + std::string(253, ' '), kTakes, "a list as long as its copy takes", {"1;"}},
        {"1 " + std::string(254, ' '), kRefuses, "a longer one", {"1;"}},
        {bands, kRefuses, "longer than the working copy", {std::string(1023, '3') + ";", std::string(7999, '3') + ";"}},
    };
    static const char* supported = nullptr;
    const Check check = {"validBandLock", [](const char* value) { return validBandLock(value, supported); }};
    for (const auto& c : kCases)
        for (const std::string& value : c.values)
        {
            const std::vector<char> exact = ExactText(c.supported);
            supported = exact.data();
            const bool ended = value.empty() || (value.ends_with(';') && value != ";");
            EXPECT_EQ(Judge(check, value), std::to_string(c.code) + (ended ? "" : "|invalid\n"))
                << value.substr(0, 80) << ": " << c.why;
        }
}
}  // namespace kobd::test
