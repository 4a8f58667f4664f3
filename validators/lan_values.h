// The LAN's addressing as the set request in hand will leave it.
#pragma once

#include <array>

namespace kobd
{
// A dotted text with its zero byte; empty when the object cannot be read, or holds a longer text,
// which is no address either.
using AddressText = std::array<char, 64>;

// The value of an object that holds an address.
AddressText ReadAddress(const char* object);

// Whether `value` lies in the LAN's segment and its last part is neither 0 nor 255.
bool IsLanHost(const char* value);
}  // namespace kobd
