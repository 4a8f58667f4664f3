// Servers, credentials, time zone, position and configuration file.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/requests.h"
#include "tests/validators/codes.h"
#include "validators/lan_wan.h"

namespace kobd::test
{
TEST(ValidVpnserver, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"10.1.2.3", kTakes, "an address"},
        {"vpn.example.com", kTakes, "a name"},
        {"http://vpn.example.com", kTakes, "what checkDomain takes"},
        {std::string(63, 'x') + ".com", kTakes, "67 characters"},
        {std::string(64, 'x') + ".com", kRefuses, "68 characters"},
        {"10.1.2.0", kRefuses, "an address that ends in .0"},
        {"127.0.0.1", kRefuses, "loopback"},
        {"::1", kRefuses, "IPv6"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validVpnserver), cases);
}

TEST(PingServers, TakeAddressesAndNames)
{
    for (const Check& check : {CHECK(validWatchdogPingServer), CHECK(validSnmpTrapServer)})
    {
        const std::vector<CodeCase> cases = {
            {"192.0.2.1", kTakes, "IPv4"},
            {"192.0.2.0", kTakes, "IPv4 that ends in .0"},
            {"2001:db8::1", kTakes, "IPv6"},
            {"www.example.com", kTakes, "a name"},
            {"http://www.example.com", kRefuses, "a URL"},
            {"192.0.2.256", kRefuses, "neither address nor name"},
            {"localhost", kRefuses, "one label"},
            {"a.com; reboot", kRefuses, "a command behind"},
            {"", kRefuses, "empty"},
        };
        ExpectCodes(check, cases);
    }
    const std::vector<LogCase> cases = {
        {CHECK(validWatchdogPingServer), "::1",
         "0|validIpv4: validstart\n|validIpv4: [::1] is invalid IPv4\n|validIpv6: [::1] is valid IPv6\n"},
        {CHECK(validSnmpTrapServer), "a.b",
         "2|validIpv4: validstart\n|validIpv4: [a.b] is invalid IPv4\n|validIpv6: [a.b] is invalid IPv6\n"
         "|validDomain: last p string:b|validDomain: last p string:(null)"},
    };
    ExpectLogs(cases);
}

TEST(UpgradeCredentials, AreNeededForFtp)
{
    NameIndexBuild();
    const std::string folder = "upgradeFtpUpgradeFolder";
    const struct
    {
        const char* stored;  // upgrade folder
        const char* sent;    // with the same request, nullptr: none
        std::string value;
        int code;
        const char* why;
    } kCases[] = {
        {"ftp://a.bc/", nullptr, "", kRefuses, "ftp"},
        {"ftps://a.bc/", nullptr, "", kRefuses, "ftps"},
        {"http://a.bc/", nullptr, "", kTakes, "http"},
        {"https://a.bc/", nullptr, "", kTakes, "https"},
        {"HTTP://a.bc/", nullptr, "", kRefuses, "exact case"},
        {"httphttps://a.bc/", nullptr, "", kRefuses, "a scheme that is neither"},
        {"", nullptr, "", kRefuses, "no folder"},
        {"a.bc/http://", nullptr, "", kRefuses, "a scheme begins the text"},
        {"http", nullptr, "", kTakes, "without :// the whole text is the scheme"},
        {"http/a.bc", nullptr, "", kRefuses, "without :// the whole text is the scheme"},
        {"httpsxxxxxxxx://", nullptr, "", kRefuses, "a scheme longer than the buffer"},
        {"ftp://a.bc/", "http://a.bc/", "", kTakes, "the folder of the same request counts"},
        {"http://a.bc/", "ftp://a.bc/", "", kRefuses, "the folder of the same request counts"},
        {"ftp://a.bc/", nullptr, "u", kTakes, "one character"},
        {"ftp://a.bc/", nullptr, std::string(64, 'u'), kTakes, "64 characters"},
        {"ftp://a.bc/", nullptr, std::string(65, 'u'), kRefuses, "65 characters"},
        {"http://a.bc/", nullptr, std::string(65, 'u'), kRefuses, "65 characters, http"},
    };
    for (const auto& c : kCases)
        for (const char* object : {"upgradeFtpUsername", "upgradeFtpPassword"})
        {
            ResetPlatform();
            platform.values["upgradeFtpUpgradeFolderGet"] = c.stored;
            OutputCapture output;
            const std::string sent = c.sent != nullptr ? Pair(folder, c.sent) : "";
            EXPECT_EQ(Ask(ReqObjSet, Pair(object, c.value) + sent).result, c.code) << object << ": " << c.why;
            EXPECT_EQ(platform.Calls("set").empty(), c.code != kTakes) << c.why;
        }
}

TEST(ValidSystemTimezone, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"GMT+08:00", kTakes, "whole hours"},
        {"GMT-12:00", kTakes, "largest, west"},
        {"GMT+12:00", kTakes, "largest, east"},
        {"GMT+00:00", kTakes, "none"},
        {"GMT-00:00", kTakes, "none, west"},
        {"GMT-03:30", kTakes, "half an hour, from the list"},
        {"GMT+03:30", kTakes, "from the list"},
        {"GMT+04:30", kTakes, "from the list"},
        {"GMT+05:30", kTakes, "from the list"},
        {"GMT+05:45", kTakes, "from the list"},
        {"GMT+06:30", kTakes, "from the list"},
        {"GMT+09:30", kTakes, "from the list"},
        {"GMT+13:00", kTakes, "from the list"},
        {"GMT-13:00", kRefuses, "not in the list"},
        {"GMT+14:00", kRefuses, "beyond"},
        {"GMT+08:30", kRefuses, "half an hour that is not in the list"},
        {"GMT-05:45", kRefuses, "the other sign"},
        {"GMT+00:01", kRefuses, "a minute"},
        {"GMT+8:00", kRefuses, "one digit"},
        {"GMT+8:000", kRefuses, "nine characters in another form"},
        {"GMT+008:0", kRefuses, "nine characters in another form"},
        {"GMT+08.00", kRefuses, "no colon"},
        {"GMT+0a:00", kRefuses, "a letter"},
        {"GMT+ 8:00", kRefuses, "a blank"},
        {"GMT++8:00", kRefuses, "two signs"},
        {"GMT+08:0;", kRefuses, "a semicolon"},
        {"GMT+08:00;", kRefuses, "a semicolon behind"},
        {"GMT08:000", kRefuses, "no sign"},
        {"gmt+08:00", kRefuses, "small letters"},
        {"UTC+08:00", kRefuses, "another name"},
        {"GMT+08:00 ", kRefuses, "a blank behind"},
        {"GMT", kRefuses, "no offset"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validSystemTimezone), cases);
}

TEST(ValidDdnsServiceProvider, TakesAndRefuses)
{
    const std::vector<CodeCase> cases = {
        {"DDNS1.EXAMPLE.COM", kTakes, "first"},
        {"DDNS2.EXAMPLE.COM(CUSTOM)", kTakes, "with a kind"},
        {"DDNS3.EXAMPLE.NET(STATIC)", kTakes, "with a kind"},
        {"DDNS3.EXAMPLE.ORG", kTakes, "last"},
        {"ddns1.example.com", kRefuses, "small letters"},
        {"DDNS1.EXAMPLE.CO", kRefuses, "a beginning"},
        {"DDNS1.EXAMPLE.COM(CUSTOM)", kRefuses, "a kind that it does not have"},
        {"DDNS1.EXAMPLE.COM ", kRefuses, "a blank behind"},
        {"", kRefuses, "empty"},
    };
    ExpectCodes(CHECK(validDdnsServiceProvider), cases);
}

TEST(ValidGps, Numbers)
{
    const std::vector<CodeCase> numbers = {
        {"0", kTakes, "zero"},
        {"", kTakes, "an empty text reads as 0"},
        {"-90", kTakes, "lowest latitude"},
        {"90.0", kTakes, "highest latitude"},
        {"+12.5", kTakes, "a sign"},
        {".5", kTakes, "no digit before the point"},
        {"5.", kTakes, "none behind"},
        {"1e1", kTakes, "an exponent"},
        {"9.00E+1", kTakes, "an exponent with a sign"},
        {" \t\n12", kTakes, "white space in front"},
        {"-0.0", kTakes, "negative zero"},
        {"1e-999", kTakes, "too small to be told from 0"},
        {std::string(500, '0') + "9", kTakes, "zeros in front"},
        {"12abc", kRefuses, "letters behind"},
        {"12 ", kRefuses, "a blank behind"},
        {" ", kRefuses, "a blank alone"},
        {"1,5", kRefuses, "a comma"},
        {"1.2.3", kRefuses, "two points"},
        {"--1", kRefuses, "two signs"},
        {"1-", kRefuses, "a sign behind"},
        {"-", kRefuses, "a sign alone"},
        {".", kRefuses, "a point alone"},
        {"e1", kRefuses, "an exponent alone"},
        {"1e", kRefuses, "an exponent without a number"},
        {"nan", kRefuses, "not a number"},
        {"-NAN", kRefuses, "not a number"},
        {"nan(1)", kRefuses, "not a number"},
        {"inf", kRefuses, "infinity"},
        {"-Infinity", kRefuses, "infinity"},
        {"1e999", kRefuses, "reads as infinity"},
        {"0x1p3", kRefuses, "hexadecimal"},
        {"0x10", kRefuses, "hexadecimal"},
        {"north", kRefuses, "a word"},
    };
    for (const Check& check : {CHECK(validGpsLongitude), CHECK(validGpsLatitude), CHECK(validGpsAltitude)})
        ExpectCodes(check, numbers);
}

TEST(ValidGps, Bounds)
{
    const std::vector<CodeCase> cases = {
        {"-180", kTakes, "lowest"},    {"180.0", kTakes, "highest"},    {"180.0000001", kRefuses, "above"},
        {"-180.1", kRefuses, "below"}, {"1e10", kRefuses, "far above"},
    };
    ExpectCodes(CHECK(validGpsLongitude), cases);
    const std::vector<CodeCase> latitude = {
        {"90.0001", kRefuses, "above"},
        {"-90.0001", kRefuses, "below"},
        {"180", kRefuses, "a longitude"},
    };
    ExpectCodes(CHECK(validGpsLatitude), latitude);
    const std::vector<CodeCase> altitude = {
        {"-11000.5", kTakes, "below the sea"},
        {"1e308", kTakes, "any number"},
    };
    ExpectCodes(CHECK(validGpsAltitude), altitude);
}

TEST(ValidConfigFile, NamesAFileThatExists)
{
    SKIP_WITHOUT_NAMESPACES();
    std::ofstream("/tmp/config.bin") << "x";
    ASSERT_EQ(chmod("/tmp/config.bin", 0), 0);
    ASSERT_EQ(symlink("/tmp/nowhere", "/tmp/dangling"), 0);
    const std::vector<CodeCase> cases = {
        {"/tmp/config.bin", kTakes, "exists, whatever its mode"},
        {"/tmp", kTakes, "a folder exists too"},
        {"/tmp/dangling", kRefuses, "a link to nothing"},
        {"/tmp/none", kRefuses, "does not exist"},
        {"/tmp/config.bin/", kRefuses, "no folder"},
        {"", kRefuses, "empty"},
        {"/" + std::string(5000, 'x'), kRefuses, "longer than any path"},
    };
    ExpectCodes(CHECK(validConfigFile), cases);
}
}  // namespace kobd::test
