// Reading numbers and texts for the validators.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kobd
{
// The text of an exported check's argument: a missing one (nullptr) reads as the empty text. A check
// that accepts the empty text refuses a missing one by itself.
constexpr const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

// A number written in digits alone, at least one; nothing when it does not fit 32 bits.
std::optional<uint32_t> ReadDigits(std::string_view text);

// A finite number in decimal notation, white space allowed in front; the empty text is 0. Nothing
// when any other character is left over, or without a text (nullptr).
std::optional<double> ReadReal(const char* text);

// Copies `text` with a zero byte; false, and an empty copy, when it does not fit.
bool CopyWhole(std::string_view text, std::span<char> copy);
}  // namespace kobd
