// The numbers of an IPv4 address, and what follows from them. Unlike the checks, these take any four
// decimal numbers with dots between them, each with optional blanks and sign in front, and do not look
// at what stands behind the fourth.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kobd
{
using DottedParts = std::array<int64_t, 4>;

// The four numbers of a.b.c.d; those beyond 64 bits stay at the nearest one. Nothing when there are
// fewer than four, and without a text (nullptr).
std::optional<DottedParts> ReadDotted(const char* text);

// Whether the ones of a mask stand without a gap at its top.
constexpr bool IsContiguous(uint32_t mask) { return ((0 - mask) & ~mask) == 0; }
}  // namespace kobd

extern "C"
{
    // The value of an address, a * 2^24 + b * 2^16 + c * 2^8 + d. -1 without a text (nullptr); -2 when
    // a number is 256 or more, is missing, or does not fit 32 bits.
    int64_t iptonum(const char* text);

    // The network address of `address` under `mask` ("head"), or the network address plus 256 ("end",
    // which is not the broadcast address). Any other word, or nullptr, is "head". -3 when either text
    // has no value.
    int64_t getSubnet(const char* address, const char* mask, const char* which);

    // 1 when the last number is 255, or 0; else 0, also for a text without four numbers.
    int isBroadcastIP(const char* text);
    int isLastByteZeroIP(const char* text);

    // 0 when the address lies above its network address, else 2. Errors of iptonum and getSubnet are
    // compared as the negative numbers that they are: an address or a mask without four numbers
    // answers 0.
    int isLanSegmentAddress(const char* address, const char* mask);

    // 0 when the address lies below its network address plus 256, else 2. With a mask of 24 bits or
    // more the broadcast address lies below it too. Without four numbers in either text: 2.
    int isLanBroadcastIP(const char* address, const char* mask);
}
