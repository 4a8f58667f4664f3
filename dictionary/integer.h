// Reading whole numbers from texts, the same on every build.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace kobd
{
// The number at the beginning of `text` as atoi reads it (leading blanks and a sign are allowed, a
// text that begins with no number is 0), except that what does not fit stays at the nearest 32-bit
// number: atoi would wrap it into one that a check accepts.
inline int32_t ReadInteger(const char* text)
{
    return static_cast<int32_t>(std::clamp<long long>(strtoll(text, nullptr, 10), INT32_MIN, INT32_MAX));
}
}  // namespace kobd
