// The bands that the radio module supports: lists of band numbers with blanks between them
// ("1 3 20"), kept by the platform in its non-volatile store.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kobd
{
inline constexpr const char* kLteBandsKey = "suppband";
inline constexpr const char* kNrBandsKey = "suppband5g";

// Reads the list under `key` into `list` as zero-terminated text; the empty text when the store has
// none. The last number of a list too long for it is left out, with whatever follows.
void ReadBandList(const char* key, std::span<char> list);

struct BandNumbers
{
    size_t count = 0;         // numbers stored
    bool digits_only = true;  // false when an item anywhere in the list is no number
};

// Splits `list` at its blanks, in place, and stores its first numbers into `bands`, as many as fit.
// An item that is no number is stored as 0, which is no band.
BandNumbers SplitBandList(char* list, std::span<int32_t> bands);
}  // namespace kobd
