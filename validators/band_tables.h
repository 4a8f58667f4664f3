// Which channel numbers the radio bands cover, for the channel lock and the cell lock. Every table is
// indexed by band number and holds a row of zeros for a band that is not defined.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kobd
{
// Downlink EARFCNs are dl_first to dl_first + count - 1. Frequencies in units of 100 kHz.
struct LteEarfcnBand
{
    uint32_t band;
    uint32_t count;  // 0: no such band
    uint32_t dl_first;
    uint32_t dl_low;
    uint32_t ul_first;  // 0, like ul_low, for a band without uplink
    uint32_t ul_low;
};

// Downlink NR-ARFCNs are dl_first to dl_first + width / raster - 1. Frequencies in kHz.
struct NrArfcnBand
{
    uint32_t band;
    uint32_t width;     // of the downlink, of the uplink where there is no downlink; 0: no such band
    uint32_t raster;    // kHz from one channel number to the next
    uint32_t dl_first;  // 0, like dl_low, for a band without downlink
    uint32_t dl_low;
    uint32_t ul_first;  // 0, like ul_low, for a band without uplink
    uint32_t ul_low;
};

// Downlink EARFCNs low to high on which a cell can be locked, both included.
struct PciLockBand
{
    int32_t band;  // 0: no cell lock in this band
    int32_t low;
    int32_t high;
};

inline constexpr size_t kLteBands = 256;     // bands 0 to 255
inline constexpr size_t kNrBands = 262;      // bands 0 to 261
inline constexpr size_t kPciLockBands = 75;  // bands 0 to 74

extern const std::array<LteEarfcnBand, kLteBands> LteEarfcnBandTable;
extern const std::array<NrArfcnBand, kNrBands> NrArfcnBandTable;
extern const std::array<PciLockBand, kPciLockBands> PciLockBandTable;
}  // namespace kobd
