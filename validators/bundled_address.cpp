// Bindings of an address of the LAN's pool to a MAC address.
#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <optional>

#include "daemon/base/result.h"
#include "platform/lists.h"
#include "validators/address.h"
#include "validators/dotted.h"
#include "validators/lan_values.h"
#include "validators/rows.h"
#include "validators/static_route.h"

using namespace kobd;

namespace
{
using Row = BundledAddressRow;

constexpr size_t kIpBytes = 4;
constexpr size_t kMacBytes = 6;
constexpr size_t kLastPart = 3;

const unsigned char* IpOf(const void* row) { return static_cast<const unsigned char*>(row) + Row::kIpOffset; }
const unsigned char* MacOf(const void* row) { return static_cast<const unsigned char*>(row) + Row::kMacOffset; }

bool IsIp(const unsigned char* ip)
{
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, ip, text, sizeof text) != nullptr && validIpv4(text) == kSuccess;
}

bool IsMac(const unsigned char* mac)
{
    char text[sizeof "00:00:00:00:00:00"];
    snprintf(text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    return validMac(text) == kSuccess;
}

int JudgeOtherBindings(const void* row)
{
    char other[Row::kSize] = {};
    OtherRows others(nextBundledAddrList_net, RowIndex(row), other);
    while (others.Read())
        if (memcmp(IpOf(row), IpOf(other), kIpBytes) == 0 || memcmp(MacOf(row), MacOf(other), kMacBytes) == 0)
            return kInvalidArgument;
    return others.Result();
}

// The LAN's value of that name; nothing when it is no dotted address.
std::optional<DottedParts> LanValue(const char* name) { return ReadDotted(ReadAddress(name).data()); }

// Whether the address lies beside the router's own in the LAN, and inside the pool by its last part.
bool IsInPool(const unsigned char* ip)
{
    const std::optional<DottedParts> lan = LanValue("networkLanSettingIp");
    if (!lan) return false;
    for (size_t i = 0; i < kLastPart; ++i)
        if (ip[i] != (*lan)[i]) return false;
    const std::optional<DottedParts> start = LanValue("networkLanSettingStart");
    const std::optional<DottedParts> end = LanValue("networkLanSettingEnd");
    if (!start || !end) return false;
    const int last = ip[kLastPart];
    return last != (*lan)[kLastPart] && (*start)[kLastPart] <= last && last <= (*end)[kLastPart];
}
}  // namespace

int validBundledAddress(void* row)
{
    if (row == nullptr || !IsIp(IpOf(row)) || !IsMac(MacOf(row))) return kInvalidArgument;
    const int code = JudgeOtherBindings(row);
    if (code != kSuccess) return code;
    return IsInPool(IpOf(row)) ? kSuccess : kInvalidArgument;
}
