// Static IPv4 routes.
#include "validators/static_route.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/lists.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/check.h"
#include "validators/lan.h"
#include "validators/rows.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
using Row = StaticRouteRow;

constexpr const char* kFunction = "validNetWorkStaticRouteList";
constexpr int64_t kPartMax = 255;

// Four numbers of 0 to 255 in digits, and nothing else. A number beyond that would wrap into
// another mask.
std::optional<DottedParts> ReadMask(const FieldCopy& netmask)
{
    const std::string_view text = netmask.View();
    if (!IsMadeOf(text, "0123456789.") || std::count(text.begin(), text.end(), '.') != 3) return {};
    const std::optional<DottedParts> parts = ReadDotted(netmask.Text());
    if (!parts || std::any_of(parts->begin(), parts->end(), [](int64_t part) { return part > kPartMax; })) return {};
    return parts;
}

// The mask as numbers. Nothing for one that no route may have, and two lines about it.
std::optional<DottedParts> JudgeMask(const FieldCopy& netmask)
{
    const std::optional<DottedParts> parts = ReadMask(netmask);
    if (!parts || netmask.View() == "0.0.0.0" || !IsContiguous(static_cast<uint32_t>(iptonum(netmask.Text()))))
    {
        LOG_ALWAYS("validStaticRouteMask", "[%s] is invalid mask\n", netmask.Text());
        LOG_ALWAYS(kFunction, "invalid mask\n");
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

int JudgeOtherRoutes(const void* row)
{
    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return Refuse(kFunction, "no enough memory\n");
    OtherRows others(nextStaticRouterList_net, RowIndex(row), other.get());
    while (others.Read())
        if (SameFields(row, other.get(), {Row::kIp, Row::kNetmask}))
            return Refuse(kFunction, "the entry has been in list\n");
    return others.Result();
}
}  // namespace

int validNetWorkStaticRouteList(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    const std::optional<DottedParts> mask = JudgeMask(FieldCopy(row, Row::kNetmask));
    if (!mask) return kInvalidArgument;
    const FieldCopy ip(row, Row::kIp);
    if (validIpv4(ip.Text()) != kSuccess) return Refuse(kFunction, "invalid ipaddress\n");
    if (!IsNetworkAddress(ip.Text(), *mask)) return Refuse(kFunction, "ip & subnet not equal ip\n");
    const bool lan = FieldView(row, Row::kInterface) == "LAN";
    if (lan && validLanIp(FieldCopy(row, Row::kGateway).Text()) != kSuccess)
        return Refuse(kFunction, "gateway and LAN IP not the same subnet\n");
    return JudgeOtherRoutes(row);
}
