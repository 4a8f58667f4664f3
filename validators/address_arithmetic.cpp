// The values of addresses, and what follows from them about a LAN's segment.
#include "validators/address_arithmetic.h"

#include <cstdlib>
#include <cstring>

#include "validators/check.h"

namespace
{
constexpr int64_t kNoText = -1;
constexpr int64_t kNoAddress = -2;
constexpr int64_t kNoSubnet = -3;
constexpr int64_t kPartEnd = 256;           // numbers of an address are below
constexpr int64_t kSegmentAddresses = 256;  // from "head" to "end", whatever the mask

int LastPartIs(const char* text, int64_t part)
{
    const auto parts = kobd::ReadDotted(text);
    return parts && (*parts)[3] == part ? 1 : 0;
}
}  // namespace

std::optional<kobd::DottedParts> kobd::ReadDotted(const char* text)
{
    if (text == nullptr) return std::nullopt;
    DottedParts parts;
    for (size_t i = 0; i < parts.size(); ++i)
    {
        if (i > 0 && *text++ != '.') return std::nullopt;
        char* end = nullptr;
        parts[i] = strtoll(text, &end, 10);
        if (end == text) return std::nullopt;
        text = end;
    }
    return parts;
}

int64_t iptonum(const char* text)
{
    if (text == nullptr) return kNoText;
    const auto parts = kobd::ReadDotted(text);
    if (!parts) return kNoAddress;
    int64_t value = 0;
    for (const int64_t part : *parts)
    {
        // A negative number goes into the sum as it is; below 32 bits it could overflow the value.
        if (part >= kPartEnd || part < INT32_MIN) return kNoAddress;
        value = value * kPartEnd + part;
    }
    return value;
}

int64_t getSubnet(const char* address, const char* mask, const char* which)
{
    const int64_t address_value = iptonum(address);
    const int64_t mask_value = iptonum(mask);
    if (address_value < 0 || mask_value < 0) return kNoSubnet;
    const int64_t head = address_value & mask_value;
    const bool end = which != nullptr && strcmp(which, "end") == 0;
    return end ? head + kSegmentAddresses : head;
}

int isBroadcastIP(const char* text) { return LastPartIs(text, 255); }

int isLastByteZeroIP(const char* text) { return LastPartIs(text, 0); }

int isLanSegmentAddress(const char* address, const char* mask)
{
    return kobd::Verdict(iptonum(address) > getSubnet(address, mask, "head"));
}

int isLanBroadcastIP(const char* address, const char* mask)
{
    return kobd::Verdict(iptonum(address) < getSubnet(address, mask, "end"));
}
