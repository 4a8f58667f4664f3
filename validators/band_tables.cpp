// The band tables, made from their data files, and the checks of what those must hold.
#include "validators/band_tables.h"

#include <algorithm>
#include <iterator>

namespace kobd
{
namespace
{
constexpr LteEarfcnBand kLteRows[] = {
#include "validators/lte_earfcn_bands.def"
};
constexpr NrArfcnBand kNrRows[] = {
#include "validators/nr_arfcn_bands.def"
};
constexpr PciLockBand kPciLockRows[] = {
#include "validators/pci_lock_bands.def"
};

// A row lost or written twice would change what a lock accepts.
static_assert(std::size(kLteRows) == 74 && std::size(kNrRows) == 57 && std::size(kPciLockRows) == 55);

// Whether the rows stand in the order of their bands, none twice and none outside the table.
template <typename Row, size_t rows>
constexpr bool AscendByBand(const Row (&bands)[rows], size_t table_size)
{
    for (size_t i = 0; i < rows; ++i)
    {
        if (bands[i].band < 1 || static_cast<size_t>(bands[i].band) >= table_size) return false;
        if (i > 0 && bands[i].band <= bands[i - 1].band) return false;
    }
    return true;
}
static_assert(AscendByBand(kLteRows, kLteBands));
static_assert(AscendByBand(kNrRows, kNrBands));
static_assert(AscendByBand(kPciLockRows, kPciLockBands));

// LTE downlinks have channel numbers of their own, rising with the band.
constexpr bool LteRangesRise()
{
    uint32_t end = 0;
    for (const LteEarfcnBand& row : kLteRows)
    {
        if (row.count == 0 || row.dl_low == 0 || row.dl_first < end) return false;
        if ((row.ul_first == 0) != (row.ul_low == 0)) return false;
        end = row.dl_first + row.count;
    }
    return true;
}
static_assert(LteRangesRise());

constexpr bool NrRowsAreWhole()
{
    return std::all_of(std::begin(kNrRows), std::end(kNrRows),
                       [](const NrArfcnBand& row)
                       {
                           const bool raster = row.raster == 5 || row.raster == 15 || row.raster == 60;
                           const bool dl = (row.dl_first == 0) == (row.dl_low == 0);
                           const bool ul = (row.ul_first == 0) == (row.ul_low == 0);
                           const bool any = row.dl_first != 0 || row.ul_first != 0;
                           return raster && dl && ul && any && row.width >= row.raster;
                       });
}
static_assert(NrRowsAreWhole());

// Band 59 alone is out of order: its range lies in that of bands 46 and 47.
constexpr int32_t kPciLockBandOutOfOrder = 59;

constexpr bool PciLockRangesRise()
{
    int32_t last = -1;
    for (const PciLockBand& row : kPciLockRows)
    {
        if (row.low > row.high) return false;
        if (row.band == kPciLockBandOutOfOrder) continue;
        if (row.low <= last) return false;
        last = row.high;
    }
    return true;
}
static_assert(PciLockRangesRise());

template <size_t table_size, typename Row, size_t rows>
constexpr std::array<Row, table_size> ByBand(const Row (&bands)[rows])
{
    std::array<Row, table_size> table = {};
    for (const Row& row : bands) table[static_cast<size_t>(row.band)] = row;
    return table;
}
}  // namespace

constexpr std::array<LteEarfcnBand, kLteBands> LteEarfcnBandTable = ByBand<kLteBands>(kLteRows);
constexpr std::array<NrArfcnBand, kNrBands> NrArfcnBandTable = ByBand<kNrBands>(kNrRows);
constexpr std::array<PciLockBand, kPciLockBands> PciLockBandTable = ByBand<kPciLockBands>(kPciLockRows);
}  // namespace kobd
