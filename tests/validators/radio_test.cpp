// Radio modes, band locks, tracking areas and transmit power.
#include "validators/radio.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::string kNoMatch = "2|regexMatchFunction: REGEX_ERROR: regex no match\n";
const std::string kBadBandList = "2|validBandLock: invalid\n";
}  // namespace

TEST(RadioMode, Words)
{
    ExpectVerdicts(CHECK(validRadioPreferMode), {
                                                    {"4G", "0", "LTE"},
                                                    {"5G", "0", "NR"},
                                                    {"4g", "2", "case counts"},
                                                    {"", "2", "empty"},
                                                    {"3G", "2", "another"},
                                                    {"4G5G", "2", "both"},
                                                    {"4G ", "2", "a blank behind"},
                                                });
    ExpectVerdicts(CHECK(validPreMode), {
                                            {"LTE_TD_pre", "0", "as written"},
                                            {"TD_GSM_pre", "0", "as written"},
                                            {"lte_td_PRE", "0", "case does not count"},
                                            {"LTE_TD", "2", "a beginning"},
                                            {"LTE_TD_pre ", "2", "a continuation"},
                                            {"TD_LTE_auto", "2", "a word of the other list"},
                                            {"", "2", "empty"},
                                        });
    ExpectVerdicts(CHECK(validErrValid), {
                                             {"TD_LTE_auto", "0", "as written"},
                                             {"Only_LTE", "0", "as written"},
                                             {"Only_TD", "0", "as written"},
                                             {"Only_GSM", "0", "as written"},
                                             {"ONLY_gsm", "0", "case does not count"},
                                             {"Only", "2", "a beginning"},
                                             {"LTE_TD_pre", "2", "a word of the other list"},
                                             {"", "2", "empty"},
                                         });
}

TEST(RadioMode, EventNotificationCommandNamesAPath)
{
    ExpectVerdicts(CHECK(validEventNotifyComd), {
                                                    {"/", "0", "the root"},
                                                    {"/bin/true x", "0", "a path"},
                                                    {"a b /c", "0", "anywhere"},
                                                    {std::string(62, 'a') + "/", "0", "the 63rd character"},
                                                    {std::string(63, 'a') + "/", "2", "the 64th"},
                                                    {"true", "2", "no path"},
                                                    {"a\\b", "2", "the other slash"},
                                                    {"", "2", "empty"},
                                                });
}

TEST(BandLock, EachAgainstItsOwnList)
{
    ResetPlatform();
    platform.nvram = {{"suppband", "1 3 5 7 8 20 28 38 40 41"}, {"suppband5g", "1 78"}};
    ExpectVerdicts(CHECK(validlteBandLock), {
                                                {"", "0", "no lock"},
                                                {"3;7;20;", "0", "three bands"},
                                                {"41;", "0", "the last of the list"},
                                                {"3;7", kBadBandList, "not ended"},
                                                {";", kBadBandList, "no band"},
                                                {"3;3;", "2", "twice"},
                                                {"3;4;", "2", "4 is not supported"},
                                                {"03;", "2", "compared as text"},
                                                {"78;", "2", "an NR band"},
                                            });
    ExpectVerdicts(CHECK(valid5gBandLock), {
                                               {"", "0", "no lock"},
                                               {"1;78;", "0", "both"},
                                               {"78", kBadBandList, "not ended"},
                                               {"3;", "2", "an LTE band"},
                                           });
}

TEST(BandLock, ListsOfSupportedBandsAreReadAnew)
{
    OutputCapture output;
    ResetPlatform();
    EXPECT_EQ(validlteBandLock("3;"), 2) << "no list yet";
    platform.nvram["suppband"] = "3";
    EXPECT_EQ(validlteBandLock("3;"), 0);
    platform.nvram["suppband"] = std::string(252, '0') + "2 4";
    EXPECT_EQ(validlteBandLock("4;"), 2) << "255 characters fill the buffer, the 4 may have been 41";
    platform.nvram["suppband"] = std::string(251, '0') + "2 4";
    EXPECT_EQ(validlteBandLock("4;"), 0) << "254 do not";
}

TEST(TrackingAreas, CodesWithTheirSemicolons)
{
    ExpectVerdicts(CHECK(validTacLockList),
                   {
                       {"", "0", "no lock"},
                       {"1;", "0", "lowest"},
                       {"65535;", "0", "highest"},
                       {"1;65535;", "0", "two"},
                       {"7;7;", "0", "repeated"},
                       {"9999;", "0", "four digits"},
                       {"10000;", "0", "five"},
                       {"59999;", "0", "below 60000"},
                       {"60000;64999;", "0", "6x"},
                       {"65499;65500;65529;65530;", "0", "65x"},
                       {"1;2;3;4;5;6;7;8;", "0", "eight"},
                       {"10001;10002;10003;10004;10005;10006;10007;10008;", "0", "48 characters"},
                       {"1;2;3;4;5;6;7;8;9;", "2", "nine"},
                       {std::string(48, ';'), kNoMatch, "no code in 48 characters"},
                       {std::string(49, ';'), "2", "49 characters"},
                       {"10001;10002;10003;10004;10005;10006;10007;010008;", "2", "49 characters with codes"},
                       {"0;", kNoMatch, "no area"},
                       {"65536;", kNoMatch, "one above"},
                       {"1;65536;", kNoMatch, "one above behind a good one"},
                       {"66000;", kNoMatch, "above"},
                       {"70000;", kNoMatch, "above"},
                       {"99999;", kNoMatch, "above"},
                       {"100000;", kNoMatch, "six digits"},
                       {"01;", kNoMatch, "a leading zero"},
                       {"1;2", kNoMatch, "the last not ended"},
                       {"1", kNoMatch, "not ended"},
                       {";", kNoMatch, "no code"},
                       {"1;;2;", kNoMatch, "an empty one between"},
                       {";1;", kNoMatch, "an empty one in front"},
                       {"1;;", kNoMatch, "an empty one behind"},
                       {"1; 2;", kNoMatch, "a blank"},
                       {"1,2;", kNoMatch, "a comma"},
                       {"-1;", kNoMatch, "a sign"},
                       {"1;\n", kNoMatch, "a newline"},
                       {"a;", kNoMatch, "a letter"},
                   });
    ExpectVerdicts(CHECK(validTacLockTimes), {
                                                 {"1", "0", "lowest"},
                                                 {"8", "0", "highest"},
                                                 {"0", kNoMatch, "one below"},
                                                 {"9", kNoMatch, "one above"},
                                                 {"", kNoMatch, "empty"},
                                                 {"11", kNoMatch, "two digits"},
                                                 {"08", kNoMatch, "a leading zero"},
                                                 {"1\n", kNoMatch, "a newline"},
                                                 {std::string(8000, '1'), kNoMatch, "long"},
                                             });
}

TEST(TransmitPower, FlagAndLimit)
{
    std::vector<TextCase> cases = {
        {"0", "0", "no limit"},
        {"1", kNoMatch, "a limit without its power"},
        {"1,", kNoMatch, "a limit without its power"},
        {"0,5", kNoMatch, "a power without a limit"},
        {"2,5", kNoMatch, "no such flag"},
        {"1,24", kNoMatch, "one above"},
        {"1,30", kNoMatch, "above"},
        {"1,100", kNoMatch, "three digits"},
        {"1,05", kNoMatch, "a leading zero"},
        {"1,-1", kNoMatch, "a sign"},
        {"01,5", kNoMatch, "a leading zero of the flag"},
        {"1, 5", kNoMatch, "a blank"},
        {"1;5", kNoMatch, "a semicolon"},
        {"1,5,", kNoMatch, "a second comma"},
        {"", kNoMatch, "empty"},
        {"00", kNoMatch, "two zeros"},
        {"0\n", kNoMatch, "a newline"},
        {std::string(8000, '0'), kNoMatch, "long"},
    };
    for (int power = 0; power <= 23; ++power) cases.push_back({"1," + std::to_string(power), "0", "0 to 23 dBm"});
    ExpectVerdicts(CHECK(validLteTxpowerLimit), cases);
}
}  // namespace kobd::test
