// The cell lock: its form, its messages in their order, and both edges of every band.
#include <gtest/gtest.h>

#include <string>

#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "validators/band_tables.h"
#include "validators/radio.h"

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
}  // namespace

TEST(CellLock, Entries)
{
    const std::string five = "1200,1;1201,1;1202,1;1203,1;1204,1;";
    const struct
    {
        const char* bands;
        std::string list;
        std::string verdict;
        const char* why;
    } kCases[] = {
        {"3", "", kForm, "empty"},
        {"3", ";", kForm, "no entry"},
        {"3", "1300,1", kForm, "not ended"},
        {"3", "1300,1; ", kForm, "a blank behind the end"},
        {"3", ";;", kEmpty, "two empty entries"},
        {"3", ";1300,1;", kEmpty, "the first is empty"},
        {"3", "1300,1;;", kEmpty, "the second is empty"},
        {"3", "1300,1;;1301,1;", kEmpty, "one between is empty"},
        {"3", five, kAccepted, "five"},
        {"3", five + "1205,1;", kTooMany, "six"},
        {"3", "x;x;x;x;x;x;", kTooMany, "counted before they are looked at"},
        {"3", ";;;;;;", kTooMany, "empty ones count"},
        {"3", "1300,0;", kAccepted, "lowest cell"},
        {"3", "1300,503;", kAccepted, "highest cell"},
        {"3", "1300,504;", Invalid("504"), "one above"},
        {"3", "1300,4294967296;", Invalid("4294967296"), "a cell that would wrap to 0"},
        {"3", "1300,;", Invalid("1300,"), "no cell"},
        {"3", "1300;", Invalid("1300"), "no comma"},
        {"3", ",1;", Invalid(",1"), "no channel"},
        {"3", ",;", Invalid(","), "neither"},
        {"3", "1300,x;", kNotDigits, "cell in letters"},
        {"3", "x,1;", kNotDigits, "channel in letters"},
        {"3", "-1300,1;", kNotDigits, "a sign"},
        {"3", "1300, 1;", kNotDigits, "a blank"},
        {"3", "1300,1,1;", kNotDigits, "three parts"},
        {"3", "1300,1,;", kNotDigits, "a second comma"},
        {"3", "1300,504;x;", Invalid("504"), "ends at the first that is wrong"},
        {"3", "9,504;", Invalid("504"), "the cell is judged before the channel"},
        {"3", "1199,1;", Invalid("1199"), "below the band"},
        {"3", "4294968596,1;", Invalid("4294968596"), "a channel that would wrap to 1300"},
        {"3", "1300,1;1300,2;", kAccepted, "two cells of one channel"},
        {"3", "1300,1;1301,1;", kAccepted, "one cell on two channels"},
        {"3", "1300,1;1300,1;", "2|[1300,1] is duplicate\n", "twice"},
        {"3", "1300,1;1300,01;", kAccepted, "written differently"},
        {"3", "1300,1;1300,1;1300,2;1300,1;1300,2;",
         "2|[1300,1] is duplicate\n|[1300,1] is duplicate\n|[1300,2] is duplicate\n", "each repetition is named"},
        {"3", "1300,1;1300,1;x;", "2|[1300,1] is duplicate\n|[x] is invalid\n", "goes on behind a repetition"},
        {"3", "1300,1;1300,1;;", "2|[1300,1] is duplicate\n|pcilock is empty\n", "and finds an empty one"},
        {"3", "00000000001300,0503;", kAccepted, "19 characters"},
        {"3", "000000000001300,0503;", Invalid("000000000001300,0503"), "20"},
        {"3", "1300,000000000000005039;", Invalid("1300,000000000000005"), "is not cut into a good one"},
        {"", "1300,1;", Invalid("1300"), "no band supported"},
        {"n3 3x", "1300,1;", Invalid("1300"), "no band numbers"},
        {"n3 3", "1300,1;", kAccepted, "one among others"},
        {" 1  3 ", "1300,1;", kAccepted, "doubled blanks"},
        {"1", "0,1;", kAccepted, "band 1 from its channel 0"},
        {"15", "0,1;", Invalid("0"), "a band without cell lock has no channel, not even 0"},
        {"0", "0,1;", Invalid("0"), "band 0 is none"},
        {"75 85 255", "69466,1;", Invalid("69466"), "bands above 74 have none"},
        {"4294967299", "1300,1;", Invalid("1300"), "a band that would wrap to 3"},
        {"240", "239999,0;", Invalid("239999"), "below band 240"},
        {"240", "240000,0;", kAccepted, "its first"},
        {"240", "247750,0;", kAccepted, "its last"},
        {"240", "247751,0;", Invalid("247751"), "above"},
        {"250", "249999,0;", Invalid("249999"), "below band 250"},
        {"250", "250000,0;", kAccepted, "its first"},
        {"250", "251500,0;", kAccepted, "its last"},
        {"250", "251501,0;", Invalid("251501"), "above"},
        {"3", "240000,0;", Invalid("240000"), "not supported"},
        {"2 4 5 6 7 8 9 10 11 3", "1300,1;", kAccepted, "the tenth band counts"},
        {"2 4 5 6 7 8 9 10 11 12 3", "1300,1;", Invalid("1300"), "the eleventh does not"},
    };
    for (const auto& c : kCases) EXPECT_EQ(Lock(c.bands, c.list), c.verdict) << c.why << ": " << c.list;
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
