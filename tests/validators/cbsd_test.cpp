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
}  // namespace

TEST(CbsdRange, DigitsWithinTheRange)
{
    for (const RangeCase& c : kRanges)
    {
        const std::string upper = std::to_string(c.upper);
        ExpectVerdicts(c.check, {
                                    {"", "0", "not given"},
                                    {"0", "0", "lowest without a sign"},
                                    {"1", "0", "inside"},
                                    {upper, "0", "upper bound is inclusive"},
                                    {"0000000000000000" + upper, "0", "leading zeros are digits"},
                                    {std::to_string(c.upper + 1), c.range, "one above"},
                                    {"2147483648", c.range, "beyond 31 bits"},
                                    {"4294967295", c.range, "would be -1 as a signed number"},
                                    {"4294967206", c.range, "would be -90"},
                                    {"4294967169", c.range, "would be -127"},
                                    {"4294967296", c.range, "would wrap to 0"},
                                    {"18446744073709551616", c.range, "would wrap to 0 from 64 bits"},
                                    {std::string(8000, '9'), c.range, "long"},
                                    {"-1", kNotDecimal, "a sign is no digit"},
                                    {"-0", kNotDecimal, "not before 0 either"},
                                    {"+1", kNotDecimal, "plus neither"},
                                    {"1.0", kNotDecimal, "no whole number"},
                                    {" 1", kNotDecimal, "a blank before"},
                                    {"1 ", kNotDecimal, "a blank after"},
                                    {"1\n", kNotDecimal, "a newline"},
                                    {"1e1", kNotDecimal, "no exponent"},
                                    {"0x1", kNotDecimal, "no hexadecimal"},
                                    {"%s%n", kNotDecimal, "never a format"},
                                    {"\xC2\xB2", kNotDecimal, "not ASCII"},
                                });
    }
}

TEST(CbsdCoordinate, LatitudeInDegrees)
{
    const std::string range = "2|validFloatAccuracy: range: -90.000000 ~ 90.000000\n";
    const std::string places = "2|validFloatAccuracy: accurate to the seventh decimal place.\n";
    const std::string decimal = "2|validFloatAccuracy: must be decimal\n";
    ExpectVerdicts(CHECK(validCbsdLatitude), {
                                                 {"", "0", "not given"},
                                                 {"0", "0", "equator"},
                                                 {"90", "0", "north pole"},
                                                 {"-90", "0", "south pole"},
                                                 {"+90", "0", "with its sign"},
                                                 {"-89.1234567", "0", "seven places"},
                                                 {"-89.12345678", places, "eight"},
                                                 {"1.00000000", places, "zeros are places"},
                                                 {"91.12345678", places, "places are judged before the range"},
                                                 {"90.0000001", "0", "rounds to 90 in single precision"},
                                                 {"90.0000038", "0", "the last that does"},
                                                 {"90.0000039", range, "the first that does not"},
                                                 {"-90.0000038", "0", "the same below"},
                                                 {"-90.0000039", range, "the same below"},
                                                 {"90.5", range, "beyond the pole"},
                                                 {"-91", range, "beyond the other"},
                                                 {"180", range, "a longitude"},
                                                 {std::string(400, '9'), range, "beyond double precision"},
                                                 {"-" + std::string(50, '9'), range, "beyond single precision"},
                                                 {std::string(8000, '0') + "1.5", "0", "leading zeros"},
                                                 {"-", "0", "a lone sign is 0"},
                                                 {".", "0", "so is a lone point"},
                                                 {"45.", "0", "nothing behind the point"},
                                                 {".5", "0", "nothing before it"},
                                                 {"-.5", "0", "nor behind the sign"},
                                                 {"1.2.3", decimal, "two points"},
                                                 {"1..", decimal, "two points at the end"},
                                                 {"--1", decimal, "two signs"},
                                                 {"1-", decimal, "a sign behind"},
                                                 {"1e5", decimal, "no exponent"},
                                                 {"nan", decimal, "not a number"},
                                                 {"inf", decimal, "infinity"},
                                                 {"0x10", decimal, "hexadecimal"},
                                                 {" 1", decimal, "a blank"},
                                                 {"1,5", decimal, "a comma"},
                                                 {"91.2x", decimal, "characters are judged first"},
                                             });
}

TEST(CbsdCoordinate, LongitudeInDegrees)
{
    const std::string range = "2|validFloatAccuracy: range: -180.000000 ~ 180.000000\n";
    ExpectVerdicts(CHECK(validCbsdLongitude), {
                                                  {"180", "0", "east"},
                                                  {"-180.0000000", "0", "west, seven places"},
                                                  {"180.0000076", "0", "the last that rounds to 180"},
                                                  {"180.0000077", range, "the first that does not"},
                                                  {"-180.1", range, "beyond"},
                                                  {"181", range, "beyond"},
                                              });
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
