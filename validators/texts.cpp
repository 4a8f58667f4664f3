// Numbers, read more strictly than the C library does where a check decides by them.
#include "validators/texts.h"

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
}  // namespace kobd
