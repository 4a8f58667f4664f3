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
    ExpectVerdicts(check_, {
                               {"1", "0", "the only one, though its profile is off"},
                               {"2", kOnlyOne, "no second"},
                               {"0", kOnlyOne, "counted from 1"},
                               {"4294967297", kOnlyOne, "would wrap to 1"},
                               {"x", kOnlyOne, "no number"},
                           });
    EXPECT_TRUE(platform.Calls("get getApnInstance").empty());
}

TEST_F(ApnBinding, SeveralInterfaces)
{
    ExpectVerdicts(check_, {
                               {"0", kBeyond, "counted from 1"},
                               {"-1", kBeyond, "negative"},
                               {"-2147483648", kBeyond, "the least"},
                               {"5", kBeyond, "no fifth"},
                               {"4294967300", kBeyond, "would wrap to 4"},
                               {"", kBeyond, "no number"},
                               {"1", kOff, "off"},
                               {"2", "0", "off, but carries the default route"},
                               {"3", kOff, "off"},
                               {"4", "0", "on"},
                           });
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

TEST(Bandwidth, NumberAndUnit)
{
    ExpectVerdicts(CHECK(validIperfUdpBandWidth), {
                                                      {"10M", "0", "megabits"},
                                                      {"500K", "0", "kilobits"},
                                                      {"1K", "0", "one digit"},
                                                      {std::string(8190, '1') + "M", "0", "a message full"},
                                                      {"9007199254740993M", "0", "any number of digits"},
                                                      {"0M", kNoMatch, "zero"},
                                                      {"010M", kNoMatch, "a leading zero"},
                                                      {"10m", kNoMatch, "the unit's case counts"},
                                                      {"10k", kNoMatch, "the unit's case counts"},
                                                      {"10", kNoMatch, "no unit"},
                                                      {"M", kNoMatch, "no number"},
                                                      {"10G", kNoMatch, "no such unit"},
                                                      {"10KM", kNoMatch, "two units"},
                                                      {"1.5M", kNoMatch, "a point"},
                                                      {"-1M", kNoMatch, "a sign"},
                                                      {" 10M", kNoMatch, "a blank before"},
                                                      {"10 M", kNoMatch, "a blank between"},
                                                      {"10M\n", kNoMatch, "a newline"},
                                                      {"10M;", kNoMatch, "more behind"},
                                                      {"", kNoMatch, "empty"},
                                                  });
}

TEST(CommandText, HasNoSemicolon)
{
    ExpectVerdicts(CHECK(validCommonStr), {
                                              {"", "0", "empty"},
                                              {"fw.bin", "0", "a name"},
                                              {"a b:c,d'e", "0", "other marks"},
                                              {";", "2", "alone"},
                                              {"fw.bin;reboot", "2", "between"},
                                              {"fw.bin;", "2", "at the end"},
                                              {std::string(8000, 'a') + ";", "2", "far behind"},
                                          });
}

TEST(DigitMap, Length)
{
    ExpectVerdicts(CHECK(validDigitMap), {
                                             {"x", "0", "shortest"},
                                             {"[2-8]xxxxxx|13xxxxxxxxx", "0", "a map"},
                                             {std::string(1024, 'x'), "0", "longest"},
                                             {std::string(1025, 'x'), "2", "one above"},
                                             {std::string(8000, 'x'), "2", "long"},
                                             {"", "2", "empty"},
                                         });
}
}  // namespace kobd::test
