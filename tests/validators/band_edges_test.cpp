// The first and the last channel of every band, through the channel lock and the cell lock.
#include <gtest/gtest.h>

#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "validators/band_tables.h"
#include "validators/cell_lock.h"
#include "validators/channel_lock.h"

namespace kobd::test
{
namespace
{
// Channels `first` to `last` are accepted under the band that the store has under `key`, and no others.
void ExpectEdges(int (*check)(const char*), const char* key, uint32_t band, uint32_t first, uint32_t last,
                 const char* behind)
{
    ResetPlatform();
    platform.nvram[key] = std::to_string(band);
    OutputCapture output;
    const auto code = [&](uint32_t channel) { return check((std::to_string(channel) + behind).c_str()); };
    EXPECT_EQ(code(first), 0) << key << " " << band;
    EXPECT_EQ(code(last), 0) << key << " " << band;
    EXPECT_EQ(code(last + 1), 2) << key << " " << band;
    EXPECT_EQ(first == 0 ? 2 : code(first - 1), 2) << key << " " << band;
}
}  // namespace

TEST(BandEdges, AreAcceptedAndNothingBeside)
{
    for (const LteEarfcnBand& row : LteEarfcnBandTable)
        if (row.dl_first != 0)
            ExpectEdges(validEarfcnlock, "suppband", row.band, row.dl_first, row.dl_first + row.count - 1, ";");
    for (const NrArfcnBand& row : NrArfcnBandTable)
        if (row.dl_first != 0)
            ExpectEdges(validEarfcnlock, "suppband5g", row.band, row.dl_first,
                        row.dl_first + row.width / row.raster - 1, ";");
    for (const PciLockBand& row : PciLockBandTable)
        if (row.band != 0)
            ExpectEdges(validPcilock, "suppband", static_cast<uint32_t>(row.band), static_cast<uint32_t>(row.low),
                        static_cast<uint32_t>(row.high), ",7;");
}
}  // namespace kobd::test
