// Texts that a row points to. A row holds a 32-bit address on every build, so on 64 bits such texts
// must lie below 4 GiB.
#pragma once

#include <cstdint>
#include <string_view>

namespace kobd::host
{
// The address of a zero-terminated copy of the text, kept until the process ends; equal texts share
// one copy. 0, which reads as no text, when there is no memory below 4 GiB.
uint32_t LowText(std::string_view text);
}  // namespace kobd::host
