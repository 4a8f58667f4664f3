// Reading whole numbers from texts, the same on every build.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace kobd
{
// Reads the number at the beginning of `text` as atoi does: leading blanks and a sign are allowed, and
// a text that begins with no number is 0. A number that does not fit becomes the nearest 32-bit number;
// atoi would wrap it into one that a check accepts.
inline int32_t ReadInteger(const char* text)
{
    return static_cast<int32_t>(std::clamp<long long>(strtoll(text, nullptr, 10), INT32_MIN, INT32_MAX));
}
}  // namespace kobd
