// Reading numbers and texts for the validators.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kobd
{
using DottedParts = std::array<int64_t, 4>;

// Reads a.b.c.d: decimal numbers, each with optional blanks and sign in front; what follows the
// fourth is not looked at. Numbers beyond 64 bits stay at the nearest one. Nothing when there are
// fewer than four.
std::optional<DottedParts> ReadDotted(const char* text);

// A number written in digits alone, at least one; nothing when it does not fit 32 bits.
std::optional<uint32_t> ReadDigits(std::string_view text);

// A finite number in decimal notation, white space allowed in front; the empty text is 0. Nothing
// when any other character is left over.
std::optional<double> ReadDecimal(const char* text);

// Copies `text` with a zero byte; false, and an empty copy, when it does not fit.
bool CopyWhole(std::string_view text, std::span<char> copy);
}  // namespace kobd
