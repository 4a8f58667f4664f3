// Ports, protocols, keys, blanks and lists of bands.
#include <gtest/gtest.h>

#include "tests/validators/codes.h"
#include "validators/address.h"

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
    const std::vector<LogCase> cases = {
        {CHECK(validPortRange), "1", "0"},
        {CHECK(validPortRange), "65535", "0"},
        {CHECK(validPortRange), "80", "0"},
        {CHECK(validPortRange), "65536", "2|port(65536) must be 1-65535 \n"},
        {CHECK(validPortRange), "3000000000", "2|port(2147483647) must be 1-65535 \n"},
        {CHECK(validPortRange), "4294967376", "2|port(2147483647) must be 1-65535 \n"},
        {CHECK(validPortRange), "18446744073709551696", "2|port(2147483647) must be 1-65535 \n"},
        {CHECK(validPortRange), std::string(300, '1'), "2|port(2147483647) must be 1-65535 \n"},
        {CHECK(validPortRange), "0", "2|port(0) first char must not be \"0\" \n"},
        {CHECK(validPortRange), "080", "2|port(080) first char must not be \"0\" \n"},
        {CHECK(validPortRange), "", "2|port() must be digits \n"},
        {CHECK(validPortRange), "80a", "2|port(80a) must be digits \n"},
        {CHECK(validPortRange), "-1", "2|port(-1) must be digits \n"},
        {CHECK(validPortRange), "+80", "2|port(+80) must be digits \n"},
        {CHECK(validPortRange), " 80", "2|port( 80) must be digits \n"},
        {CHECK(validPortRange), "80-81", "2|port(80-81) must be digits \n"},
        {CHECK(validPortRange), "0x50", "2|port(0x50) must be digits \n"},
    };
    ExpectLogs(cases);
}

TEST(ValidPortFormat, Predicate)
{
    const std::string wrong = "|not valid separate port range";
    const std::vector<LogCase> cases = {
        {CHECK(validPortFormat), "1", "1"},
        {CHECK(validPortFormat), "65535", "1"},
        {CHECK(validPortFormat), "1-65535", "1"},
        {CHECK(validPortFormat), "80-81", "1"},
        {CHECK(validPortFormat), "80-80", "0|0:80   1:80" + wrong},
        {CHECK(validPortFormat), "81-80", "0|0:81   1:80" + wrong},
        {CHECK(validPortFormat), "0-80", "0|0:0   1:80" + wrong},
        {CHECK(validPortFormat), "80-65536", "0|0:80   1:65536" + wrong},
        {CHECK(validPortFormat), "99999-99999", "0|0:99999   1:99999" + wrong},
        {CHECK(validPortFormat), "0", "0"},
        {CHECK(validPortFormat), "65536", "0"},
        {CHECK(validPortFormat), "100000", "0"},
        {CHECK(validPortFormat), "080", "0"},
        {CHECK(validPortFormat), "80-", "0"},
        {CHECK(validPortFormat), "-80", "0"},
        {CHECK(validPortFormat), "-", "0"},
        {CHECK(validPortFormat), "80-81-82", "0"},
        {CHECK(validPortFormat), "80:81", "0"},
        {CHECK(validPortFormat), "80 - 81", "0"},
        {CHECK(validPortFormat), "80-081", "0"},
        {CHECK(validPortFormat), "80\n", "0"},
        {CHECK(validPortFormat), "", "0"},
        {CHECK(validPortFormat), std::string(8000, '1'), "0"},
    };
    ExpectLogs(cases);
}

TEST(ValidProtocol, Predicate)
{
    const std::vector<CodeCase> cases = {
        {"all", kYes, "any"},       {"tcp", kYes, "tcp"},
        {"udp", kYes, "udp"},       {"tcpudp", kYes, "both"},
        {"icmp", kYes, "icmp"},     {"TCP", kNo, "capitals"},
        {"tcp,udp", kNo, "a list"}, {"tc", kNo, "a beginning"},
        {"tcp ", kNo, "a blank"},   {"udptcp", kNo, "the other order"},
        {"", kNo, "empty"},         {"6", kNo, "a number"},
    };
    ExpectCodes(CHECK(validProtocol), cases);
}

TEST(ValidWifiPassword, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"secret12", kTakes, "a key"},
        {"", kTakes, "the length is not judged here"},
        {"0", kTakes, "a lone 0"},
        {"x0x", kTakes, "not in front"},
        {"00x1", kTakes, "not in front"},
        {"tab\there", kTakes, "only the space is refused"},
        {"\xC3\xA9t\xC3\xA9", kTakes, "any other byte"},
        {"0x12345678", kRefuses, "hexadecimal"},
        {"0X12345678", kRefuses, "capital X"},
        {"0x", kRefuses, "the prefix alone"},
        {"two words", kRefuses, "a space within"},
        {" leading", kRefuses, "a space in front"},
        {"trailing ", kRefuses, "a space behind"},
    };
    ExpectCodes(CHECK(validWifiPassword), cases);
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
        std::string value;
        std::string supported;
        int code;
        const char* why;
    } kCases[] = {
        {"", bands, kTakes, "no lock"},
        {"", "", kTakes, "no lock, no bands"},
        {"3;7;20;", bands, kTakes, "three bands"},
        {"41;", bands, kTakes, "the last band"},
        {"7;3;", bands, kTakes, "any order"},
        {BandList(16, ";"), many, kTakes, "16 bands"},
        {BandList(17, ";"), many, kRefuses, "17 bands"},
        {"3;7", bands, kRefuses, "no end"},
        {";", bands, kRefuses, "an end alone"},
        {"3;3;", bands, kRefuses, "twice"},
        {"3;7;3;", bands, kRefuses, "twice, apart"},
        {"3;4;", bands, kRefuses, "not supported"},
        {"2;", bands, kRefuses, "a beginning of 20 and 28"},
        {"03;", bands, kRefuses, "compared as texts"},
        {"3;;7;", bands, kRefuses, "an empty band"},
        {";3;", bands, kRefuses, "an empty band in front"},
        {"3;;", bands, kRefuses, "an empty band behind"},
        {";;", bands, kRefuses, "two ends alone"},
        {" 3;", bands, kRefuses, "a blank"},
        {"3,7;", bands, kRefuses, "a comma"},
        {"1 3;", bands, kRefuses, "two supported ones with their blank"},
        {"3;", "", kRefuses, "nothing supported"},
        {"3;", "   ", kRefuses, "blanks only"},
        {"3;7;", "  3   7 ", kTakes, "blanks count once"},
        {"64;", BandList(64, " "), kTakes, "the 64th supported band"},
        {"65;", BandList(65, " "), kRefuses, "no band beyond it counts"},
        {"1;", "1 " + std::string(253, ' '), kTakes, "a list as long as its copy takes"},
        {"1;", "1 " + std::string(254, ' '), kRefuses, "a longer one"},
        {std::string(1023, '3') + ";", bands, kRefuses, "longer than the working copy"},
        {std::string(7999, '3') + ";", bands, kRefuses, "much longer"},
    };
    static const char* supported = nullptr;
    const Check check = {"validBandLock", [](const char* value) { return validBandLock(value, supported); }};
    for (const auto& c : kCases)
    {
        const std::vector<char> exact = ExactText(c.supported);
        supported = exact.data();
        const bool ended = c.value.empty() || (c.value.ends_with(';') && c.value != ";");
        EXPECT_EQ(Judge(check, c.value), std::to_string(c.code) + (ended ? "" : "|invalid\n"))
            << c.value.substr(0, 80) << ": " << c.why;
    }
}
}  // namespace kobd::test
