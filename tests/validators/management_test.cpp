// APN binding, bandwidth, command texts, digit maps.
#include "validators/management.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/connection.h"
#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "validators/row_layouts.h"

namespace kobd::test
{
namespace
{
const std::string kNoMatch = "2|regexMatchFunction: REGEX_ERROR: regex no match\n";
const std::string kOnlyOne = "2|only apn1 in config\n";
const std::string kBeyond = "2|out of wan interface count\n";
const std::string kOff = "2|enable the apn first\n";

std::string ApnRow(std::string_view enable)
{
    std::string row(ApnConfigRow::kSize, '\xFF');
    return row.replace(ApnConfigRow::kApnEnable.offset, enable.size(), enable);
}

class ApnBinding : public testing::Test
{
protected:
    void SetUp() override
    {
        ResetPlatform();
        g_stConfigWANIF.count = 4;
        platform.nvram["default_gateway"] = "2";
        using namespace std::string_view_literals;
        for (int32_t apn = 0; apn < 4; ++apn)
            platform.rows["ApnConfigTable"][apn] = ApnRow(apn == 3 ? "1\0"sv : "0\0"sv);
    }
    void TearDown() override { g_stConfigWANIF.count = 0; }
    Check check_ = CHECK(validTr069BindApnIndex);
};
}  // namespace

TEST_F(ApnBinding, OneInterface)
{
    g_stConfigWANIF.count = 1;
    ExpectVerdicts(check_, {{"0", "the only one, though its profile is off", {"1"}},
                            {kOnlyOne, "no second, none before, no number", {"2", "0", "4294967297", "x"}}});
    EXPECT_TRUE(platform.Calls("get getApnInstance").empty());
}

TEST_F(ApnBinding, SeveralInterfaces)
{
    ExpectVerdicts(check_, {{kBeyond, "counted from 1 to 4", {"0", "-1", "-2147483648", "5", "4294967300", ""}},
                            {kOff, "off", {"1", "3"}},
                            {"0", "off, but carries the default route", {"2"}},
                            {"0", "on", {"4"}}});
    EXPECT_EQ(platform.Calls("get getApnInstance"),
              (std::vector<std::string>{"get getApnInstance 0", "get getApnInstance 2", "get getApnInstance 3"}))
        << "profiles are counted from 0, and read where they decide";
    g_stConfigWANIF.count = 0;
    EXPECT_EQ(Judge(check_, "1"), kBeyond) << "no interface at all";
}

TEST_F(ApnBinding, DefaultGatewayIsANumberOrNone)
{
    for (const auto& [gateway, verdict, why] : {
             std::tuple{"1", std::string("0"), "the first"},
             {"01", std::string("0"), "the first, with a zero"},
             {"", kOff, "none"},
             {"1a", kOff, "no number"},
             {"eth", kOff, "no number"},
             {"4294967297", kOff, "would wrap to 1"},
             {"2", kOff, "another"},
         })
    {
        platform.nvram["default_gateway"] = gateway;
        EXPECT_EQ(Judge(check_, "1"), verdict) << why;
    }
    platform.nvram["default_gateway"] = std::string(31, '0') + "1";
    EXPECT_EQ(Judge(check_, "1"), kOff) << "longer than the buffer";
    platform.nvram.erase("default_gateway");
    EXPECT_EQ(Judge(check_, "1"), kOff) << "not known";
}

TEST_F(ApnBinding, ProfileIsOnOnlyWithExactlyOne)
{
    using namespace std::string_view_literals;
    for (const auto& [enable, verdict, why] : {
             std::tuple{"1\0"sv, std::string("0"), "on"},
             {"0\0"sv, kOff, "off"},
             {"\0"sv, kOff, "empty"},
             {"11\0"sv, kOff, "two digits"},
             {"1 \0"sv, kOff, "a blank"},
             {"11111111111111111111111111111111"sv, kOff, "no zero byte in the whole field"},
         })
    {
        platform.rows["ApnConfigTable"][0] = ApnRow(enable);
        EXPECT_EQ(Judge(check_, "1"), verdict) << why;
    }
    platform.failures["getApnInstance"] = 4;
    EXPECT_EQ(Judge(check_, "1"), "0") << "no profile to say that it is off";
}

TEST(Management, BandwidthCommandTextDigitMap)
{
    ExpectVerdicts(CHECK(validIperfUdpBandWidth),
                   {{"0", "a number and a unit", {"10M", "500K", "1K", "9007199254740993M"}},
                    {"0", "a message full", {std::string(8190, '1') + "M"}},
                    {kNoMatch, "no number", {"0M", "010M", "M", "1.5M", "-1M", ""}},
                    {kNoMatch, "no such unit", {"10m", "10k", "10", "10G", "10KM"}},
                    {kNoMatch, "more beside it", {" 10M", "10 M", "10M\n", "10M;"}}});
    ExpectVerdicts(CHECK(validCommonStr), {{"0", "no semicolon", {"", "fw.bin", "a b:c,d'e"}},
                                           {"2", "a semicolon", {";", "fw.bin;reboot", "fw.bin;"}},
                                           {"2", "far behind", {std::string(8000, 'a') + ";"}}});
    ExpectVerdicts(CHECK(validDigitMap),
                   {{"0", "1 to 1024 characters", {"x", "[2-8]xxxxxx|13xxxxxxxxx", std::string(1024, 'x')}},
                    {"2", "more and none", {std::string(1025, 'x'), std::string(8000, 'x'), ""}}});
}
}  // namespace kobd::test
