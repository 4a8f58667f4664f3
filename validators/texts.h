// Reading texts, and the numbers in them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>

namespace kobd
{
// A number written in digits alone, at least one. Nothing when it does not fit 32 bits.
std::optional<uint32_t> ReadDigits(std::string_view text);

// A finite number in decimal notation, white space allowed in front; the empty text is 0. Nothing
// when any other character is left over, and without a text (nullptr).
std::optional<double> ReadReal(const char* text);

// Copies `text` with a zero byte; false, and an empty copy, when it does not fit.
bool CopyWhole(std::string_view text, std::span<char> copy);

// Takes what stands before the first `separator` of `rest`; `rest` keeps what stands behind it.
std::string_view TakePart(std::string_view& rest, char separator);

// The same, but passes over empty parts: the result is empty only when there is none left.
std::string_view TakeWord(std::string_view& rest, char separator);

enum class LetterCase
{
    kExact,
    kAny,
};

// Whether `text` is one of `choices`.
bool IsOneOf(std::string_view text, std::span<const std::string_view> choices,
             LetterCase letter_case = LetterCase::kExact);

inline bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> choices,
                    LetterCase letter_case = LetterCase::kExact)
{
    return IsOneOf(text, std::span(choices.begin(), choices.size()), letter_case);
}

// Whether `text` holds no other characters than these.
bool IsMadeOf(std::string_view text, std::string_view characters);
}  // namespace kobd

extern "C"
{
    // Removes blanks and tabs at both ends, in place.
    void Trim(char* text);
}
