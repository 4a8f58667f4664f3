// Texts cut and compared; numbers read more strictly than the C library does.
#include "validators/texts.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace kobd
{
std::optional<uint32_t> ReadDigits(std::string_view text)
{
    uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

std::optional<double> ReadReal(const char* text)
{
    if (text == nullptr) return std::nullopt;
    // strtod also reads hexadecimal numbers, infinity and not-a-number, which are no decimal numbers.
    const char* number = text + strspn(text, " \t\n\v\f\r");
    if (number[strspn(number, "0123456789+-.eE")] != 0) return std::nullopt;
    char* end = nullptr;
    const double value = strtod(text, &end);
    if (*end != 0 || !std::isfinite(value)) return std::nullopt;
    return value;
}

bool CopyWhole(std::string_view text, std::span<char> copy)
{
    const bool fits = text.size() < copy.size();
    if (!fits) text = {};
    if (!text.empty()) memcpy(copy.data(), text.data(), text.size());
    copy[text.size()] = 0;
    return fits;
}

std::string_view TakePart(std::string_view& rest, char separator)
{
    const size_t end = rest.find(separator);
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    return part;
}

std::string_view TakeWord(std::string_view& rest, char separator)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(separator), rest.size()));
    return TakePart(rest, separator);
}

bool IsOneOf(std::string_view text, std::span<const std::string_view> choices, LetterCase letter_case)
{
    const auto equal = [&](std::string_view choice)
    {
        if (letter_case == LetterCase::kExact) return choice == text;
        return choice.size() == text.size() && strncasecmp(choice.data(), text.data(), text.size()) == 0;
    };
    return std::any_of(choices.begin(), choices.end(), equal);
}

bool IsMadeOf(std::string_view text, std::string_view characters)
{
    return text.find_first_not_of(characters) == text.npos;
}
}  // namespace kobd

void Trim(char* text)
{
    if (text == nullptr) return;
    constexpr const char* kBlanks = " \t";
    std::string_view kept = text;
    kept.remove_prefix(strspn(text, kBlanks));
    kept = kept.substr(0, kept.find_last_not_of(kBlanks) + 1);  // none: npos + 1 is 0
    memmove(text, kept.data(), kept.size());
    text[kept.size()] = 0;
}
