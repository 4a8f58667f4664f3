// The cell lock: its form, its messages in their order, and both edges of every band.
#include <gtest/gtest.h>

#include <string>

#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "validators/band_tables.h"
#include "validators/cell_lock.h"

namespace kobd::test
{
namespace
{
const Check kCheck = CHECK(validPcilock);

std::string Lock(const std::string& bands, const std::string& list)
{
    ResetPlatform();
    platform.nvram["suppband"] = bands;
    return Judge(kCheck, list);
}

std::string Invalid(const std::string& part) { return "2|[" + part + "] is invalid\n"; }

const std::string kAccepted = "0";
const std::string kForm = "2|invalid";
const std::string kEmpty = "2|pcilock is empty\n";
const std::string kNotDigits = "2|pcilock must be digit\n";
const std::string kTooMany = "2|max is 5\n";
const std::string kFive = "1200,1;1201,1;1202,1;1203,1;1204,1;";

const struct
{
    const char* bands;
    std::string verdict;
    const char* why;
    std::vector<std::string> lists;
} kCases[] = {
    {"3", kForm, "empty, no entry, not ended, a blank behind the end", {"", ";", "1300,1", "1300,1; "}},
    {"3", kEmpty, "an empty entry", {";;", ";1300,1;", "1300,1;;", "1300,1;;1301,1;"}},
    {"3", kAccepted, "five", {kFive}},
    {"3", kTooMany, "six, counted before they are looked at", {kFive + "1205,1;", "x;x;x;x;x;x;", ";;;;;;"}},
    {"3", kAccepted, "lowest and highest cell", {"1300,0;", "1300,503;"}},
    {"3", Invalid("504"), "one above", {"1300,504;"}},
    {"3", Invalid("4294967296"), "a cell that would wrap to 0", {"1300,4294967296;"}},
    {"3", Invalid("1300,"), "no cell", {"1300,;"}},
    {"3", Invalid("1300"), "no comma", {"1300;"}},
    {"3", Invalid(",1"), "no channel", {",1;"}},
    {"3", Invalid(","), "neither", {",;"}},
    {"3", kNotDigits, "no digits", {"1300,x;", "x,1;", "-1300,1;", "1300, 1;"}},
    {"3", kNotDigits, "a second comma", {"1300,1,1;", "1300,1,;"}},
    {"3", Invalid("504"), "ends at the first that is wrong, the cell before the channel", {"1300,504;x;", "9,504;"}},
    {"3", Invalid("1199"), "below the band", {"1199,1;"}},
    {"3", Invalid("4294968596"), "a channel that would wrap to 1300", {"4294968596,1;"}},
    {"3", kAccepted, "the same channel or the same cell", {"1300,1;1300,2;", "1300,1;1301,1;"}},
    {"3", "2|[1300,1] is duplicate\n", "twice", {"1300,1;1300,1;"}},
    {"3", kAccepted, "written differently", {"1300,1;1300,01;"}},
    {"3",
     "2|[1300,1] is duplicate\n|[1300,1] is duplicate\n|[1300,2] is duplicate\n",
     "each repetition is named",
     {"1300,1;1300,1;1300,2;1300,1;1300,2;"}},
    {"3", "2|[1300,1] is duplicate\n|[x] is invalid\n", "goes on behind a repetition", {"1300,1;1300,1;x;"}},
    {"3", "2|[1300,1] is duplicate\n|pcilock is empty\n", "and finds an empty one", {"1300,1;1300,1;;"}},
    {"3", kAccepted, "19 characters", {"00000000001300,0503;"}},
    {"3", Invalid("000000000001300,0503"), "20", {"000000000001300,0503;"}},
    {"3", Invalid("1300,000000000000005"), "is not cut into a good one", {"1300,000000000000005039;"}},
    {"", Invalid("1300"), "no band supported", {"1300,1;"}},
    {"n3 3x", Invalid("1300"), "no band numbers", {"1300,1;"}},
    {"n3 3", kAccepted, "one among others", {"1300,1;"}},
    {" 1  3 ", kAccepted, "doubled blanks", {"1300,1;"}},
    {"1", kAccepted, "band 1 from its channel 0", {"0,1;"}},
    {"15", Invalid("0"), "a band without cell lock has no channel, not even 0", {"0,1;"}},
    {"0", Invalid("0"), "band 0 is none", {"0,1;"}},
    {"75 85 255", Invalid("69466"), "bands above 74 have none", {"69466,1;"}},
    {"4294967299", Invalid("1300"), "a band that would wrap to 3", {"1300,1;"}},
    {"240", Invalid("239999"), "below band 240", {"239999,0;"}},
    {"240", kAccepted, "its first and last", {"240000,0;", "247750,0;"}},
    {"240", Invalid("247751"), "above", {"247751,0;"}},
    {"250", Invalid("249999"), "below band 250", {"249999,0;"}},
    {"250", kAccepted, "its first and last", {"250000,0;", "251500,0;"}},
    {"250", Invalid("251501"), "above", {"251501,0;"}},
    {"3", Invalid("240000"), "not supported", {"240000,0;"}},
    {"2 4 5 6 7 8 9 10 11 3", kAccepted, "the tenth band counts", {"1300,1;"}},
    {"2 4 5 6 7 8 9 10 11 12 3", Invalid("1300"), "the eleventh does not", {"1300,1;"}},
};
}  // namespace

TEST(CellLock, Entries)
{
    for (const auto& c : kCases)
        for (const std::string& list : c.lists) EXPECT_EQ(Lock(c.bands, list), c.verdict) << c.why << ": " << list;
    EXPECT_EQ(Judge({kCheck.name, [](const char*) { return validPcilock(nullptr); }}, ""), kForm) << "no text";
}

TEST(CellLock, EdgesOfEveryBand)
{
    for (const PciLockBand& row : PciLockBandTable)
    {
        if (row.band == 0) continue;
        const std::string band = std::to_string(row.band);
        const auto verdict = [&](int channel) { return Lock(band, std::to_string(channel) + ",7;"); };
        EXPECT_EQ(verdict(row.low), kAccepted) << band;
        EXPECT_EQ(verdict(row.high), kAccepted) << band;
        EXPECT_EQ(verdict(row.high + 1), Invalid(std::to_string(row.high + 1))) << band;
        if (row.low > 0)
        {
            EXPECT_EQ(verdict(row.low - 1), Invalid(std::to_string(row.low - 1))) << band;
        }
    }
}

TEST(CellLock, HostileLengths)
{
    EXPECT_EQ(Lock("3", std::string(8190, ';')), kTooMany);
    EXPECT_EQ(Lock("3", std::string(8190, '1') + ";"), Invalid(std::string(20, '1')));
    EXPECT_EQ(Lock("3", std::string(8190, ',') + ";"), Invalid(std::string(20, ',')));
}
}  // namespace kobd::test
