// Where checks find their fields in a row of ApnConfigTable. Rows have no alignment.
#pragma once

#include <cstddef>

namespace kobd
{
inline constexpr size_t kApnConfigRowBytes = 328;
inline constexpr size_t kApnEnableOffset = 4;
inline constexpr size_t kApnEnableBytes = 32;  // a text, with its zero byte
}  // namespace kobd
