// The channel lock: its form, its messages in their order, and both edges of every band.
#include <gtest/gtest.h>

#include <string>

#include "tests/recording_platform.h"
#include "tests/validators/judge.h"
#include "validators/band_tables.h"
#include "validators/channel_lock.h"

namespace kobd::test
{
namespace
{
const Check kCheck = CHECK(validEarfcnlock);

// Judges against a module with these bands. Of the lines only those behind the count of NR bands
// are given: what stands before is the same for every list of the right form.
std::string Lock(const std::string& lte, const std::string& nr, const std::string& list)
{
    ResetPlatform();
    platform.nvram = {{"suppband", lte}, {"suppband5g", nr}};
    const std::string verdict = Judge(kCheck, list);
    const size_t bands = verdict.find("|band5g_num: [");
    return bands == verdict.npos ? verdict : verdict.substr(0, 1) + verdict.substr(verdict.find(']', bands) + 2);
}

std::string Channel(int position, const std::string& value)
{
    return "|arfcn_val[" + std::to_string(position) + "] -> [" + value + "]\n";
}

const std::string kNotSupported = "|find not support arfcn value !!!\n";
const std::string kRepeated = "|find repeated arfcn value !!!\n";
const std::string kTooMany = "|lock arfcns_num too large !!!\n";
const std::string kNotDigits = "|find not digits arfcn value !!!\n";

std::string Lte(int band)
{
    const LteEarfcnBand& row = LteEarfcnBandTable[static_cast<size_t>(band)];
    return "|4G -> [" + std::to_string(band) + "]\n|dl_start_earfcn -> [" + std::to_string(row.dl_first) +
           "]\n|band_width -> [" + std::to_string(row.count) + "]\n";
}

std::string Nr(int band)
{
    const NrArfcnBand& row = NrArfcnBandTable[static_cast<size_t>(band)];
    return "|5G -> [" + std::to_string(band) + "]\n|dl_start_narfcn -> [" + std::to_string(row.dl_first) +
           "]\n|band_width -> [" + std::to_string(row.width) + "]\n|raster_ref -> [" + std::to_string(row.raster) +
           "]\n";
}
}  // namespace

TEST(ChannelLock, ListsOfTheWrongForm)
{
    const std::string wrong = "|invalid arfcns_list format !!!\n";
    for (const std::string list :
         {"", ";", ";;", "1300", "1300;1301", ";1300;", "1300;;", "1300;;1301;", "1300; ", "1"})
        EXPECT_EQ(Lock("3", "", list), "2|arfcns_list: [" + list + "]\n" + wrong) << "empty, not ended, an empty part";
    const std::string longest = std::string(1018, '0') + "1300;";
    EXPECT_EQ(Lock("3", "", longest), "0" + Channel(0, "1300") + Lte(3)) << "1023 characters";
    EXPECT_EQ(Lock("3", "", "0" + longest), "2|arfcns_list: [0" + longest.substr(0, 1022) + "]\n" + wrong) << "1024";
    EXPECT_TRUE(platform.calls.empty()) << "bands are not asked for";
    EXPECT_EQ(Judge({kCheck.name, [](const char*) { return validEarfcnlock(nullptr); }}, ""), "2|buffer is NULL !!!\n");
}

TEST(ChannelLock, WritesWhatItRead)
{
    ResetPlatform();
    platform.nvram = {{"suppband", "1 3  7 20"}, {"suppband5g", "78"}};
    EXPECT_EQ(Judge(kCheck, "1300;3350;636000;"),
              "0|arfcns_list: [1300;3350;636000;]\n|suppband4g_list: [1 3  7 20]\n|band4g_num: [4]\n"
              "|suppband5g_list: [78]\n|band5g_num: [1]\n" +
                  Channel(0, "1300") + Lte(3) + Channel(1, "3350") + Lte(7) + Channel(2, "636000") + Nr(78));
    platform.nvram = {{"suppband", "1 n3 x"}, {"suppband5g", "78"}};
    EXPECT_EQ(Judge(kCheck, "1300;"),
              "2|arfcns_list: [1300;]\n|suppband4g_list: [1 n3 x]\n|find not digits 4G band !!!\n");
    platform.nvram = {{"suppband", "3"}, {"suppband5g", "n78"}};
    EXPECT_EQ(Judge(kCheck, "1300;"),
              "2|arfcns_list: [1300;]\n|suppband4g_list: [3]\n|band4g_num: [1]\n|suppband5g_list: [n78]\n"
              "|find not digits 5G band !!!\n")
        << "also for a channel of an LTE band";
}

TEST(ChannelLock, Channels)
{
    const std::string first = Channel(0, "1300") + Lte(3);
    const std::string five = Channel(0, "1200") + Lte(3) + Channel(1, "1201") + Lte(3) + Channel(2, "1202") + Lte(3) +
                             Channel(3, "1203") + Lte(3) + Channel(4, "1204") + Lte(3);
    const struct
    {
        const char* lte;
        const char* nr;
        std::string list;
        std::string verdict;
        const char* why;
    } kCases[] = {
        {"1 3 7 20", "78", "60000;", "2" + Channel(0, "60000") + kNotSupported, "between the bands"},
        {"3", "78", "1300;1300;", "2" + first + Channel(1, "1300") + kRepeated, "twice"},
        {"3", "78", "1300;01300;", "2" + first + Channel(1, "1300") + kRepeated, "twice, written differently"},
        {"3", "", "1200;1201;1202;1203;1204;", "0" + five, "five"},
        {"3", "", "1200;1201;1202;1203;1204;1205;", "2" + five + kTooMany, "six"},
        {"3", "", "1200;1201;1202;1203;1204;x;", "2" + five + kNotDigits, "characters are judged before the number"},
        {"3", "", "1300;-1301;", "2" + first + kNotDigits, "a sign"},
        {"3", "", " 1300;", "2" + kNotDigits, "a blank"},
        {"3", "", "1300,1;", "2" + kNotDigits, "a cell lock"},
        {"3", "", "4294968596;", "2" + Channel(0, "2147483647") + kNotSupported, "would wrap to 1300"},
        {"", "78", "4295587296;", "2" + Channel(0, "2147483647") + kNotSupported, "would wrap to 620000"},
        {"3", "", "18446744073709552916;", "2" + Channel(0, "2147483647") + kNotSupported, "wraps from 64 bits"},
        {"", "", "1300;", "2" + Channel(0, "1300") + kNotSupported, "no band supported"},
        {"", "3", "1300;", "2" + Channel(0, "1300") + kNotSupported, "band 3 for NR only"},
        {"3", "", "361000;", "2" + Channel(0, "361000") + kNotSupported, "band 3 for LTE only"},
        {"1", "", "0;", "2" + Channel(0, "0") + kNotSupported, "band 1 is passed over"},
        {"1", "", "599;", "2" + Channel(0, "599") + kNotSupported, "band 1 is passed over"},
        {"1", "", "300;", "2" + Channel(0, "300") + kNotSupported, "band 1 is passed over"},
        {"1 2", "1", "422000;", "0" + Channel(0, "422000") + Nr(1), "but the NR band 1 counts"},
        {"256 300 3", "", "1300;", "0" + first, "bands above 255 are skipped"},
        {"4294967299", "", "1300;", "2" + Channel(0, "1300") + kNotSupported, "a band that would wrap to 3"},
        {"", "262 4294967374 78", "620000;", "0" + Channel(0, "620000") + Nr(78), "bands above 261 are skipped"},
        {"", "80", "0;", "2" + Channel(0, "0") + kNotSupported, "no downlink"},
        {"", "80", "342000;", "2" + Channel(0, "342000") + kNotSupported, "an uplink channel"},
        {"", "77 78", "620000;", "0" + Channel(0, "620000") + Nr(77), "the first band in the list's order"},
        {"", "78 77", "620000;", "0" + Channel(0, "620000") + Nr(78), "the first band in the list's order"},
        {"0", "", "0;", "2" + Channel(0, "0") + kNotSupported, "band 0 is none"},
        {"  3  ", " ", "1300;", "0" + first, "blanks around"},
    };
    for (const auto& c : kCases) EXPECT_EQ(Lock(c.lte, c.nr, c.list), c.verdict) << c.why << ": " << c.list;
}

TEST(ChannelLock, EdgesOfEveryLteBand)
{
    for (const LteEarfcnBand& row : LteEarfcnBandTable)
    {
        if (row.dl_first == 0) continue;
        const std::string band = std::to_string(row.band);
        const auto verdict = [&](uint32_t channel) { return Lock(band, "", std::to_string(channel) + ";").front(); };
        EXPECT_EQ(verdict(row.dl_first), '0') << band;
        EXPECT_EQ(verdict(row.dl_first + row.count - 1), '0') << band;
        EXPECT_EQ(verdict(row.dl_first - 1), '2') << band;
        EXPECT_EQ(verdict(row.dl_first + row.count), '2') << band;
    }
}

TEST(ChannelLock, EdgesOfEveryNrBand)
{
    for (const NrArfcnBand& row : NrArfcnBandTable)
    {
        if (row.dl_first == 0) continue;
        const std::string band = std::to_string(row.band);
        const auto verdict = [&](uint32_t channel) { return Lock("", band, std::to_string(channel) + ";").front(); };
        EXPECT_EQ(verdict(row.dl_first), '0') << band;
        EXPECT_EQ(verdict(row.dl_first + row.width / row.raster - 1), '0') << band;
        EXPECT_EQ(verdict(row.dl_first - 1), '2') << band;
        EXPECT_EQ(verdict(row.dl_first + row.width / row.raster), '2') << band;
    }
    EXPECT_EQ(Lock("", "78", "653332;").front(), '0') << "33333 channels, the division cut";
    EXPECT_EQ(Lock("", "78", "653333;").front(), '2');
}

TEST(ChannelLock, LongListsOfSupportedBands)
{
    std::string bands;
    for (int i = 0; i < 31; ++i) bands += "2 ";
    EXPECT_EQ(Lock(bands + "3 5", "", "1300;").front(), '0') << "the 32nd counts";
    EXPECT_EQ(Lock(bands + "5 3", "", "1300;").front(), '2') << "the 33rd does not";

    EXPECT_EQ(Lock(std::string(124, '0') + "2 4", "", "2000;").front(), '0') << "127 characters are read whole";
    EXPECT_EQ(Lock(std::string(124, '0') + "2 41", "", "2000;").front(), '2') << "128 are cut, and not to a 4";
    EXPECT_EQ(Lock(std::string(126, '0') + "4 41", "", "2000;").front(), '0')
        << "the cut keeps a number before a blank";
    EXPECT_EQ(Lock(std::string(127, '0') + "4", "", "2000;").front(), '2') << "one number alone is too long";
}
}  // namespace kobd::test
