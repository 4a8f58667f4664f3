// The bands that the radio module supports: lists of band numbers with blanks between them
// ("1 3 20"), kept by the platform in its non-volatile store. They are read anew for every check.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kobd
{
inline constexpr const char* kLteBandsKey = "suppband";
inline constexpr const char* kNrBandsKey = "suppband5g";

// Reads the list under `key` into `list`, 256 bytes at most, as zero-terminated text; the empty text
// when the store has none. A list that is too long ends with the last number that fits.
void ReadBandList(const char* key, std::span<char> list);

struct BandNumbers
{
    size_t count = 0;         // numbers stored
    bool digits_only = true;  // false when an item anywhere in the list is no number
};

// Stores the first numbers of `list` into `bands`, as many as fit. An item that is no number is stored
// as 0, which is no band.
BandNumbers SplitBandList(std::string_view list, std::span<int32_t> bands);
}  // namespace kobd
