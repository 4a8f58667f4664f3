// The LAN's own addressing. Conventions in validators/check.h. These checks write no lines of their own.
//
// The checks compare with the values that the LAN's other objects will have after the request in hand,
// so that values sent in one request are judged together. An object that cannot be read, or holds more
// than an address can have, reads as the empty text.
#pragma once

#include <array>

namespace kobd
{
// A dotted text with its zero byte.
using AddressText = std::array<char, 64>;

// The value that an object of the LAN will have after the request in hand.
AddressText ReadAddress(const char* object);

// Whether `value` lies in the LAN's segment and its last number is neither 0 nor 255.
bool IsLanHost(const char* value);
}  // namespace kobd

extern "C"
{
    // 255.255.255.x with x one of 252, 248, 240, 224, 192, 128, 0. Any character may stand for a dot.
    int validLanMask(const char* value);

    // An address that validIpv4 takes, not in 10.254.254.x, and above the network address that it has
    // under networkLanSettingMask.
    int validLanIp(const char* value);

    // An address that validIpv4 takes, and not the text of networkLanSettingIp.
    int validExternIp(const char* value);

    // The first and the last address of the LAN's pool. The first three numbers are those of
    // networkLanSettingIp. The start is not above networkLanSettingEnd, the end not below
    // networkLanSettingStart. The last number lies strictly between those of the segment's network and
    // broadcast address under networkLanSettingMask.
    int validDhcpStart(const char* value);
    int validDhcpEnd(const char* value);

    // An address of the LAN's segment whose last number is neither 0 nor 255.
    int validDmzIp(const char* value);

    // 0 when the first three numbers of both addresses agree under the mask. 2 when they do not, or
    // when one of the texts has fewer than four numbers. The fourth numbers are not compared.
    int inSameSegment(const char* first, const char* second, const char* mask);
}
