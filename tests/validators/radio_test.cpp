// Radio modes, band locks, tracking areas and transmit power.
#include "validators/radio.h"
#include "validators/band_lock.h"

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

const std::vector<TextsByVerdict> kRadioPreferMode = {
    {"0", "the two", {"4G", "5G"}},
    {"2", "nothing else", {"4g", "", "3G", "4G5G", "4G "}},
};

const std::vector<TextsByVerdict> kPreMode = {
    {"0", "in either case", {"LTE_TD_pre", "TD_GSM_pre", "lte_td_PRE"}},
    {"2", "nothing else, nor a word of the other list", {"LTE_TD", "LTE_TD_pre ", "TD_LTE_auto", ""}},
};

const std::vector<TextsByVerdict> kErrValid = {
    {"0", "in either case", {"TD_LTE_auto", "Only_LTE", "Only_TD", "Only_GSM", "ONLY_gsm"}},
    {"2", "nothing else, nor a word of the other list", {"Only", "LTE_TD_pre", ""}},
};

const std::vector<TextsByVerdict> kEventNotifyComd = {
    {"0", "a slash anywhere", {"/", "/bin/true x", "a b /c"}},
    {"0", "the 63rd character", {std::string(62, 'a') + "/"}},
    {"2", "the 64th", {std::string(63, 'a') + "/"}},
    {"2", "no path", {"true", "a\\b", ""}},
};

// What a list must look like is tested at the check that both locks share.
const std::vector<TextsByVerdict> kLteBandLock = {
    {"0", "no lock, bands of the list", {"", "3;7;20;", "41;"}},
    {kBadBandList, "not ended", {"3;7"}},
    {"2", "not supported: an NR band", {"78;"}},
};

const std::vector<TextsByVerdict> kNrBandLock = {
    {"0", "no lock, bands of the list", {"", "1;78;"}},
    {kBadBandList, "not ended", {"78"}},
    {"2", "not supported: an LTE band", {"3;"}},
};

const std::vector<TextsByVerdict> kTacLockList = {
    {"0", "no lock, lowest and highest", {"", "1;", "65535;", "1;65535;", "7;7;"}},
    {"0", "four and five digits", {"9999;", "10000;", "59999;", "60000;64999;", "65499;65500;65529;65530;"}},
    {"0", "eight, 48 characters", {"1;2;3;4;5;6;7;8;", "10001;10002;10003;10004;10005;10006;10007;10008;"}},
    {"2", "nine", {"1;2;3;4;5;6;7;8;9;"}},
    {kNoMatch, "no code in 48 characters", {std::string(48, ';')}},
    {"2", "49 characters", {std::string(49, ';'), "10001;10002;10003;10004;10005;10006;10007;010008;"}},
    {kNoMatch, "out of range", {"0;", "65536;", "1;65536;", "66000;", "70000;", "99999;", "100000;"}},
    {kNoMatch, "not ended", {"1;2", "1"}},
    {kNoMatch, "an empty one", {";", "1;;2;", ";1;", "1;;"}},
    {kNoMatch, "more than digits", {"01;", "1; 2;", "1,2;", "-1;", "1;\n", "a;"}},
};

const std::vector<TextsByVerdict> kTacLockTimes = {
    {"0", "1 to 8", {"1", "8"}},
    {kNoMatch, "nothing else", {"0", "9", "", "11", "08", "1\n", std::string(8000, '1')}},
};

const std::vector<TextsByVerdict> kTxPowerLimit = {
    {"0", "no limit", {"0"}},
    {"0", "0 to 23 dBm", {"1,0",  "1,1",  "1,2",  "1,3",  "1,4",  "1,5",  "1,6",  "1,7",
                          "1,8",  "1,9",  "1,10", "1,11", "1,12", "1,13", "1,14", "1,15",
                          "1,16", "1,17", "1,18", "1,19", "1,20", "1,21", "1,22", "1,23"}},
    {kNoMatch, "a limit without its power, a power without a limit", {"1", "1,", "0,5"}},
    {kNoMatch, "no such power", {"1,24", "1,30", "1,100", "1,05", "1,-1"}},
    {kNoMatch, "no such flag", {"2,5", "01,5", "00", "", std::string(8000, '0')}},
    {kNoMatch, "more or other characters", {"1, 5", "1;5", "1,5,", "0\n"}},
};
}  // namespace

TEST(Radio, ModesLocksAndPower)
{
    ResetPlatform();
    platform.nvram = {{"suppband", "1 3 5 7 8 20 28 38 40 41"}, {"suppband5g", "1 78"}};
    ExpectVerdicts(CHECK(validRadioPreferMode), kRadioPreferMode);
    ExpectVerdicts(CHECK(validPreMode), kPreMode);
    ExpectVerdicts(CHECK(validErrValid), kErrValid);
    ExpectVerdicts(CHECK(validEventNotifyComd), kEventNotifyComd);
    ExpectVerdicts(CHECK(validlteBandLock), kLteBandLock);
    ExpectVerdicts(CHECK(valid5gBandLock), kNrBandLock);
    ExpectVerdicts(CHECK(validTacLockList), kTacLockList);
    ExpectVerdicts(CHECK(validTacLockTimes), kTacLockTimes);
    ExpectVerdicts(CHECK(validLteTxpowerLimit), kTxPowerLimit);
}

TEST(BandLock, ListsOfSupportedBandsAreReadAnew)
{
    OutputCapture output;
    ResetPlatform();
    EXPECT_EQ(validlteBandLock("3;"), 2) << "no list yet";
    platform.nvram["suppband"] = "3";
    EXPECT_EQ(validlteBandLock("3;"), 0);
    platform.nvram["suppband"] = std::string(252, '0') + "2 4";
    EXPECT_EQ(validlteBandLock("4;"), 0) << "255 characters are read whole";
    platform.nvram["suppband"] = std::string(252, '0') + "2 41";
    EXPECT_EQ(validlteBandLock("4;"), 2) << "256 are cut, and not to a 4";
}
}  // namespace kobd::test
