// Installation parameters: both sides of every bound, in the whole numbers and in the rounding of
// single precision.
#include "validators/cbsd.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/process_setup.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::string kNotDecimal = "2|must be decimal\n";

struct RangeCase
{
    Check check;
    int upper;
    std::string range;
};
const RangeCase kRanges[] = {
    {CHECK(validCbsdHeight), 10000, "2|range: 0 ~ 10000\n"}, {CHECK(validCbsdHorAccuracy), 50, "2|range: 0 ~ 50\n"},
    {CHECK(validCbsdVerAccuracy), 3, "2|range: 0 ~ 3\n"},    {CHECK(validCbsdAzimuth), 359, "2|range: 0 ~ 359\n"},
    {CHECK(validCbsdDowntilt), 90, "2|range: -90 ~ 90\n"},   {CHECK(validCbsdGain), 128, "2|range: -127 ~ 128\n"},
    {CHECK(validCbsdEirp), 47, "2|range: -127 ~ 47\n"},      {CHECK(valid_cbsd_beamwidth), 360, "2|range: 0 ~ 360\n"},
};

const std::string kLatitudeRange = "2|validFloatAccuracy: range: -90.000000 ~ 90.000000\n";
const std::string kLongitudeRange = "2|validFloatAccuracy: range: -180.000000 ~ 180.000000\n";
const std::string kPlaces = "2|validFloatAccuracy: accurate to the seventh decimal place.\n";
const std::string kDecimal = "2|validFloatAccuracy: must be decimal\n";

const std::vector<TextsByVerdict> kLatitude = {
    {"0", "not given", {""}},
    {"0", "within the poles", {"0", "90", "-90", "+90"}},
    {"0", "seven places", {"-89.1234567"}},
    {kPlaces, "eight, zeros too, judged before the range", {"-89.12345678", "1.00000000", "91.12345678"}},
    {"0", "rounds to 90 in single precision", {"90.0000001", "90.0000038", "-90.0000038"}},
    {kLatitudeRange, "the first that does not", {"90.0000039", "-90.0000039"}},
    {kLatitudeRange, "beyond the poles", {"90.5", "-91", "180"}},
    {kLatitudeRange, "beyond double and single precision", {std::string(400, '9'), "-" + std::string(50, '9')}},
    {"0", "leading zeros", {std::string(8000, '0') + "1.5"}},
    {"0", "a lone sign or point is 0", {"-", "."}},
    {"0", "nothing before or behind the point", {"45.", ".5", "-.5"}},
    {kDecimal, "two points, two signs, a sign behind", {"1.2.3", "1..", "--1", "1-"}},
    {kDecimal, "no number of digits", {"1e5", "nan", "inf", "0x10", " 1", "1,5"}},
    {kDecimal, "characters are judged first", {"91.2x"}},
};

const std::vector<TextsByVerdict> kLongitude = {
    {"0", "east and west", {"180", "-180.0000000"}},
    {"0", "the last that rounds to 180", {"180.0000076"}},
    {kLongitudeRange, "the first that does not, and beyond", {"180.0000077", "-180.1", "181"}},
};
}  // namespace

TEST(CbsdRange, DigitsWithinTheRange)
{
    for (const RangeCase& c : kRanges)
    {
        const std::string upper = std::to_string(c.upper);
        ExpectVerdicts(c.check,
                       {{"0", "not given", {""}},
                        {"0", "both bounds", {"0", "1", upper, "0000000000000000" + upper}},
                        {c.range, "above", {std::to_string(c.upper + 1), "2147483648", std::string(8000, '9')}},
                        {c.range, "would be -1, -90, -127", {"4294967295", "4294967206", "4294967169"}},
                        {c.range, "would wrap to 0", {"4294967296", "18446744073709551616"}},
                        {kNotDecimal, "a sign is no digit", {"-1", "-0", "+1"}},
                        {kNotDecimal, "no whole number", {"1.0", "1e1", "0x1", "%s%n", "\xC2\xB2"}},
                        {kNotDecimal, "a blank", {" 1", "1 ", "1\n"}}});
    }
}

TEST(CbsdCoordinate, Degrees)
{
    ExpectVerdicts(CHECK(validCbsdLatitude), kLatitude);
    ExpectVerdicts(CHECK(validCbsdLongitude), kLongitude);
}

TEST(CbsdCoordinate, PlacesAndBoundsAreTheCallers)
{
    OutputCapture output;
    EXPECT_EQ(validFloatAccuracy("1.25", 2, 1.0F, 2.0F), 0);
    EXPECT_EQ(validFloatAccuracy("1.255", 2, 1.0F, 2.0F), 2);
    EXPECT_EQ(validFloatAccuracy("1", 0, 1.0F, 2.0F), 0);
    EXPECT_EQ(validFloatAccuracy("1.", 0, 1.0F, 2.0F), 0) << "no digit behind the point";
    EXPECT_EQ(validFloatAccuracy("1.0", 0, 1.0F, 2.0F), 2);
    EXPECT_EQ(validFloatAccuracy("0.99", 2, 1.0F, 2.0F), 2) << "below the minimum";
    EXPECT_EQ(validFloatAccuracy("", 0, 1.0F, 2.0F), 0) << "not given, whatever the bounds";
    EXPECT_EQ(validFloatAccuracy("1", -1, 1.0F, 2.0F), 2) << "no number has fewer than no places";
}
}  // namespace kobd::test
