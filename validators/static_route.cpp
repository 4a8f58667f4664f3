// Static IPv4 routes.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "platform/lists.h"
#include "validators/address.h"
#include "validators/dotted.h"
#include "validators/lan.h"
#include "validators/rows.h"
#include "validators/static_route.h"

using namespace kobd;

namespace
{
using Row = StaticRouteRow;

constexpr int64_t kPartMax = 255;

// Four numbers of 0 to 255 in digits, and nothing else. A number beyond that would wrap into
// another mask.
std::optional<DottedParts> ReadMask(const FieldCopy& netmask)
{
    const std::string_view text = netmask.View();
    if (text.find_first_not_of("0123456789.") != text.npos || std::count(text.begin(), text.end(), '.') != 3) return {};
    const std::optional<DottedParts> parts = ReadDotted(netmask.Text());
    if (!parts || std::any_of(parts->begin(), parts->end(), [](int64_t part) { return part > kPartMax; })) return {};
    return parts;
}

// Whether the ones of the mask stand without a gap at the top.
bool IsContiguous(const DottedParts& parts)
{
    uint32_t mask = 0;
    for (const int64_t part : parts) mask = mask << 8 | static_cast<uint32_t>(part);
    return ((0 - mask) & ~mask) == 0;
}

// The mask as numbers; nothing, and two lines, for one that no route may have.
std::optional<DottedParts> JudgeMask(const FieldCopy& netmask)
{
    const std::optional<DottedParts> parts = ReadMask(netmask);
    if (!parts || netmask.View() == "0.0.0.0" || !IsContiguous(*parts))
    {
        LOG_ALWAYS("validStaticRouteMask", "[%s] is invalid mask\n", netmask.Text());
        LOG_ALWAYS("validNetWorkStaticRouteList", "invalid mask\n");
        return {};
    }
    LOG_ALWAYS("validStaticRouteMask", "[%s] is valid mask\n", netmask.Text());
    return parts;
}

bool IsNetworkAddress(const char* ip, const DottedParts& mask)
{
    const std::optional<DottedParts> address = ReadDotted(ip);
    if (!address) return false;
    for (size_t i = 0; i < mask.size(); ++i)
        if (((*address)[i] & mask[i]) != (*address)[i]) return false;
    return true;
}

int Refuse(const char* why)
{
    LOG_ALWAYS("validNetWorkStaticRouteList", "%s", why);
    return kInvalidArgument;
}

int JudgeOtherRoutes(const void* row)
{
    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return Refuse("no enough memory\n");
    OtherRows others(nextStaticRouterList_net, RowIndex(row), other.get());
    while (others.Read())
        if (SameField(row, other.get(), Row::kIp) && SameField(row, other.get(), Row::kNetmask))
            return Refuse("the entry has been in list\n");
    return others.Result();
}
}  // namespace

int validNetWorkStaticRouteList(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    const std::optional<DottedParts> mask = JudgeMask(FieldCopy(row, Row::kNetmask));
    if (!mask) return kInvalidArgument;
    const FieldCopy ip(row, Row::kIp);
    if (validIpv4(ip.Text()) != kSuccess) return Refuse("invalid ipaddress\n");
    if (!IsNetworkAddress(ip.Text(), *mask)) return Refuse("ip & subnet not equal ip\n");
    if (FieldView(row, Row::kInterface) == "LAN" && validLanIp(FieldCopy(row, Row::kGateway).Text()) != kSuccess)
        return Refuse("gateway and LAN IP not the same subnet\n");
    return JudgeOtherRoutes(row);
}
