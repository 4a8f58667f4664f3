// The LAN's address, masks and pool.
#include "validators/lan.h"

#include <algorithm>
#include <cstring>

#include "dictionary/snapshot.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/check.h"
#include "validators/regex.h"

using namespace kobd;

AddressText kobd::ReadAddress(const char* object)
{
    AddressText text;
    // What cannot be read is the empty text, which no check takes for an address.
    static_cast<void>(SnapshotRead(object, text));
    return text;
}

bool kobd::IsLanHost(const char* value)
{
    const AddressText lan = ReadAddress("networkLanSettingIp");
    const AddressText mask = ReadAddress("networkLanSettingMask");
    return inSameSegment(value, lan.data(), mask.data()) == kSuccess && isBroadcastIP(value) == 0 &&
           isLastByteZeroIP(value) == 0;
}

namespace
{
constexpr size_t kSegmentParts = 3;  // parts that name a segment; the LAN's masks leave them alone

bool FirstPartsEqual(const DottedParts& first, const DottedParts& second)
{
    return std::equal(first.begin(), first.begin() + kSegmentParts, second.begin());
}

enum class PoolEnd
{
    kStart,
    kEnd,
};

// One end of the pool against the LAN's address, the other end and the mask.
bool IsPoolEnd(const char* value, PoolEnd end)
{
    if (validIpv4(value) != kSuccess) return false;
    const bool start = end == PoolEnd::kStart;
    const auto proposed = ReadDotted(value);
    const auto lan = ReadDotted(ReadAddress("networkLanSettingIp").data());
    const auto other = ReadDotted(ReadAddress(start ? "networkLanSettingEnd" : "networkLanSettingStart").data());
    const auto mask = ReadDotted(ReadAddress("networkLanSettingMask").data());
    if (!proposed || !lan || !other || !mask || !FirstPartsEqual(*proposed, *lan)) return false;

    const int64_t last = (*proposed)[3];
    const int64_t other_last = (*other)[3];
    if (start ? last > other_last : last < other_last) return false;
    const int64_t network = (*lan)[3] & (*mask)[3];
    const int64_t broadcast = (*lan)[3] | (~(*mask)[3] & 255);
    return last > network && last < broadcast;
}

// The segment 10.254.254.x belongs to the router itself.
bool IsReservedSegment(const char* value)
{
    const auto parts = ReadDotted(value);
    return parts && FirstPartsEqual(*parts, {10, 254, 254, 0});
}
}  // namespace

int validLanMask(const char* value) { return MatchAndPrint(value, "^255.255.255.(252|248|240|224|192|128|0)$"); }

int validLanIp(const char* value)
{
    if (validIpv4(value) != kSuccess || IsReservedSegment(value)) return kInvalidArgument;
    const AddressText mask = ReadAddress("networkLanSettingMask");
    // With the masks of a LAN the second test lets every address pass, the segment's broadcast
    // address included; it refuses when there is no mask to judge by.
    return Verdict(isLanSegmentAddress(value, mask.data()) == 0 && isLanBroadcastIP(value, mask.data()) == 0);
}

int validExternIp(const char* value)
{
    if (validIpv4(value) != kSuccess) return kInvalidArgument;
    return Verdict(strcmp(value, ReadAddress("networkLanSettingIp").data()) != 0);
}

int validDhcpStart(const char* value) { return Verdict(IsPoolEnd(value, PoolEnd::kStart)); }

int validDhcpEnd(const char* value) { return Verdict(IsPoolEnd(value, PoolEnd::kEnd)); }

int validDmzIp(const char* value) { return Verdict(validIpv4(value) == kSuccess && IsLanHost(value)); }

int inSameSegment(const char* first, const char* second, const char* mask)
{
    const auto a = ReadDotted(first);
    const auto b = ReadDotted(second);
    const auto m = ReadDotted(mask);
    if (!a || !b || !m) return kInvalidArgument;
    for (size_t i = 0; i < kSegmentParts; ++i)
        if (((*a)[i] & (*m)[i]) != ((*b)[i] & (*m)[i])) return kInvalidArgument;
    return kSuccess;
}
