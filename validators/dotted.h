// The four numbers of a dotted IPv4 text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kobd
{
using DottedParts = std::array<int64_t, 4>;

// Reads a.b.c.d: decimal numbers, each with optional blanks and sign in front; what follows the
// fourth is not looked at. Numbers beyond 64 bits stay at the nearest one. Nothing when there are
// fewer than four, or no text (nullptr).
std::optional<DottedParts> ReadDotted(const char* text);
}  // namespace kobd
