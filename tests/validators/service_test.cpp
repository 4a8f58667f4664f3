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
#include "tests/validators/judge.h"
#include "validators/service.h"
#include "validators/wan.h"

namespace kobd::test
{
namespace
{
const std::vector<TextsByCode> kVpnServer = {
    {kTakes, "an address", {"10.1.2.3"}},
    {kTakes, "what checkDomain takes", {"vpn.example.com", "http://vpn.example.com"}},
    {kTakes, "67 characters", {std::string(63, 'x') + ".com"}},
    {kRefuses, "68 characters", {std::string(64, 'x') + ".com"}},
    {kRefuses, "an address that ends in .0", {"10.1.2.0"}},
    {kRefuses, "neither", {"127.0.0.1", "::1", ""}},
};

const std::vector<TextsByCode> kPingServer = {
    {kTakes, "an address", {"192.0.2.1", "192.0.2.0", "2001:db8::1"}},
    {kTakes, "a name", {"www.example.com"}},
    {kRefuses, "neither address nor name", {"192.0.2.256", "localhost", "http://www.example.com", ""}},
    {kRefuses, "a command behind", {"a.com; reboot"}},
};

const std::vector<TextsByCode> kTimezone = {
    {kTakes, "whole hours", {"GMT+08:00", "GMT-12:00", "GMT+12:00", "GMT+00:00", "GMT-00:00"}},
    {kTakes,
     "from the list",
     {"GMT-03:30", "GMT+03:30", "GMT+04:30", "GMT+05:30", "GMT+05:45", "GMT+06:30", "GMT+09:30", "GMT+13:00"}},
    {kRefuses, "not in the list", {"GMT-13:00", "GMT+14:00", "GMT+08:30", "GMT-05:45", "GMT+00:01"}},
    {kRefuses, "another number of digits", {"GMT+8:00", "GMT+8:000", "GMT+008:0"}},
    {kRefuses,
     "another character for one of the form",
     {"GMT+08.00", "GMT+0a:00", "GMT+ 8:00", "GMT++8:00", "GMT+08:0;", "GMT08:000"}},
    {kRefuses, "another name", {"gmt+08:00", "UTC+08:00", "GMT", ""}},
    {kRefuses, "more behind", {"GMT+08:00;", "GMT+08:00 "}},
};

const std::vector<TextsByCode> kDdnsProvider = {
    {kTakes,
     "in the list",
     {"DDNS1.EXAMPLE.COM", "DDNS2.EXAMPLE.COM(CUSTOM)", "DDNS3.EXAMPLE.NET(STATIC)", "DDNS3.EXAMPLE.ORG"}},
    {kRefuses, "a kind that it does not have", {"DDNS1.EXAMPLE.COM(CUSTOM)"}},
    {kRefuses, "exact texts", {"ddns1.example.com", "DDNS1.EXAMPLE.CO", "DDNS1.EXAMPLE.COM ", ""}},
};

const std::vector<TextsByCode> kGps = {
    {kTakes, "an empty text reads as 0", {""}},
    {kTakes, "numbers of every latitude", {"0", "-90", "90.0", "+12.5", "-0.0", std::string(500, '0') + "9"}},
    {kTakes, "no digit before or behind the point", {".5", "5."}},
    {kTakes, "an exponent", {"1e1", "9.00E+1", "1e-999"}},
    {kTakes, "white space in front", {" \t\n12"}},
    {kRefuses, "more behind", {"12abc", "12 ", "1,5", "1.2.3", "1-"}},
    {kRefuses, "no number", {" ", "--1", "-", ".", "e1", "1e", "north"}},
    {kRefuses, "not a number, infinity", {"nan", "-NAN", "nan(1)", "inf", "-Infinity", "1e999"}},
    {kRefuses, "hexadecimal", {"0x1p3", "0x10"}},
};

const std::vector<TextsByCode> kLongitude = {
    {kTakes, "bounds", {"-180", "180.0"}},
    {kRefuses, "beyond", {"180.0000001", "-180.1", "1e10"}},
};
}  // namespace

TEST(Servers, TakeAddressesAndNames)
{
    ExpectCodes(CHECK(validVpnserver), kVpnServer);
    for (const Check& check : {CHECK(validWatchdogPingServer), CHECK(validSnmpTrapServer)})
        ExpectCodes(check, kPingServer);
    ExpectLogs({
        {CHECK(validWatchdogPingServer), "::1",
         "0|validIpv4: validstart\n|validIpv4: [::1] is invalid IPv4\n|validIpv6: [::1] is valid IPv6\n"},
        {CHECK(validSnmpTrapServer), "a.b",
         "2|validIpv4: validstart\n|validIpv4: [a.b] is invalid IPv4\n|validIpv6: [a.b] is invalid IPv6\n"
         "|validDomain: last p string:b|validDomain: last p string:(null)"},
    });
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

TEST(TimezoneAndProvider, AreInTheirLists)
{
    ExpectCodes(CHECK(validSystemTimezone), kTimezone);
    ExpectCodes(CHECK(validDdnsServiceProvider), kDdnsProvider);
}

TEST(ValidGps, NumbersAndBounds)
{
    for (const Check& check : {CHECK(validGpsLongitude), CHECK(validGpsLatitude), CHECK(validGpsAltitude)})
        ExpectCodes(check, kGps);
    ExpectCodes(CHECK(validGpsLongitude), kLongitude);
    ExpectCodes(CHECK(validGpsLatitude), {{kRefuses, "beyond", {"90.0001", "-90.0001", "180"}}});
    ExpectCodes(CHECK(validGpsAltitude), {{kTakes, "below the sea, any number", {"-11000.5", "1e308"}}});
}

TEST(ValidConfigFile, NamesAFileThatExists)
{
    SKIP_WITHOUT_NAMESPACES();
    std::ofstream("/tmp/config.bin") << "x";
    ASSERT_EQ(chmod("/tmp/config.bin", 0), 0);
    ASSERT_EQ(symlink("/tmp/nowhere", "/tmp/dangling"), 0);
    ExpectCodes(
        CHECK(validConfigFile),
        {{kTakes, "exists, whatever its mode; a folder too", {"/tmp/config.bin", "/tmp"}},
         {kRefuses, "a link to nothing, nothing, no folder", {"/tmp/dangling", "/tmp/none", "/tmp/config.bin/"}},
         {kRefuses, "empty, longer than any path", {"", "/" + std::string(5000, 'x')}}});
}
}  // namespace kobd::test
