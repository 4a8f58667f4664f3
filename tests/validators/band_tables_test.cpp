// The band tables against each other and against the channel number formulas, so that a wrong digit
// in one of them shows.
#include "validators/band_tables.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>

namespace kobd::test
{
namespace
{
using Range = std::pair<uint32_t, uint32_t>;
constexpr Range kNone = {1, 0};

Range LteRange(size_t band)
{
    const LteEarfcnBand& row = LteEarfcnBandTable[band];
    return row.count == 0 ? kNone : Range{row.dl_first, row.dl_first + row.count - 1};
}

Range CellRange(size_t band)
{
    const PciLockBand& row = PciLockBandTable[band];
    return row.band == 0 ? kNone : Range{row.low, row.high};
}

// The channel number of a frequency in kHz, rounded up to the raster (3GPP TS 38.104, 5.4.2.1).
uint32_t NrChannel(uint32_t frequency)
{
    const auto up = [](uint32_t offset, uint32_t step) { return (offset + step - 1) / step; };
    if (frequency < 3000000) return up(frequency, 5);
    if (frequency < 24250000) return 600000 + up(frequency - 3000000, 15);
    return 2016667 + (frequency > 24250080 ? up(frequency - 24250080, 60) : 0);
}
}  // namespace

TEST(BandTables, BandsOfBothGenerationsShareTheirSpectrum)
{
    size_t shared = 0;
    for (size_t band = 1; band < LteEarfcnBandTable.size(); ++band)
    {
        const LteEarfcnBand& lte = LteEarfcnBandTable[band];
        const NrArfcnBand& nr = NrArfcnBandTable[band];
        if (lte.count == 0 || nr.width == 0) continue;
        ++shared;
        EXPECT_EQ(nr.dl_low, lte.dl_low * 100) << band;
        EXPECT_EQ(nr.ul_low, lte.ul_low * 100) << band;
        // The NR range of band 46 begins 20 MHz of channels later, at a number of its own.
        EXPECT_EQ(nr.width, lte.count * 100 - (band == 46 ? 20000 : 0)) << band;
    }
    EXPECT_EQ(shared, 33u);
}

TEST(BandTables, NrChannelNumbersFollowFromTheFrequencies)
{
    const std::map<uint32_t, uint32_t> kOwnFirst = {{46, 744000}, {259, 2270832}};  // not the formula's
    for (const NrArfcnBand& row : NrArfcnBandTable)
    {
        if (row.width == 0) continue;
        const uint32_t low = row.dl_low != 0 ? row.dl_low : row.ul_low;
        EXPECT_EQ(row.raster, low < 3000000 ? 5u : low < 24250000 ? 15u : 60u) << row.band;
        const auto own = kOwnFirst.find(row.band);
        const auto expected = [&](uint32_t kHz) { return own != kOwnFirst.end() ? own->second : NrChannel(kHz); };
        EXPECT_EQ(row.dl_first, expected(row.dl_low)) << row.band;
        EXPECT_EQ(row.ul_first, expected(row.ul_low)) << row.band;
    }
}

TEST(BandTables, CellLockRangesAreTheChannelRangesButForTheseBands)
{
    const std::map<size_t, Range> kOther = {
        {30, kNone},          {32, kNone},          {49, kNone}, {50, kNone}, {51, kNone},
        {52, kNone},          {53, kNone},          {63, kNone}, {68, kNone},  // no cell lock
        {48, {55240, 56740}},                                                  // one channel more
        {59, {54200, 54850}}, {62, {65200, 65400}},                            // ranges of their own
    };
    for (size_t band = 0; band < PciLockBandTable.size(); ++band)
    {
        const auto other = kOther.find(band);
        EXPECT_EQ(CellRange(band), other != kOther.end() ? other->second : LteRange(band)) << band;
    }
}
}  // namespace kobd::test
