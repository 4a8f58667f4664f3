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

// The mask as one number. Nothing for a mask that no route may have, and two lines about it.
std::optional<uint32_t> JudgeMask(const FieldCopy& netmask)
{
    const std::string_view text = netmask.View();
    const bool dotted = IsMadeOf(text, "0123456789.") && std::count(text.begin(), text.end(), '.') == 3;
    const int64_t mask = dotted ? iptonum(netmask.Text()) : -1;
    const bool valid = mask >= 0 && text != "0.0.0.0" && IsContiguous(static_cast<uint32_t>(mask));
    LOG_ALWAYS("validStaticRouteMask", "[%s] is %s mask\n", netmask.Text(), valid ? "valid" : "invalid");
    if (valid) return static_cast<uint32_t>(mask);
    LOG_ALWAYS(kFunction, "invalid mask\n");
    return {};
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
    const std::optional<uint32_t> mask = JudgeMask(FieldCopy(row, Row::kNetmask));
    if (!mask) return kInvalidArgument;
    const FieldCopy ip(row, Row::kIp);
    if (validIpv4(ip.Text()) != kSuccess) return Refuse(kFunction, "invalid ipaddress\n");
    const int64_t address = iptonum(ip.Text());
    if ((address & *mask) != address) return Refuse(kFunction, "ip & subnet not equal ip\n");
    const bool lan = FieldView(row, Row::kInterface) == "LAN";
    if (lan && validLanIp(FieldCopy(row, Row::kGateway).Text()) != kSuccess)
        return Refuse(kFunction, "gateway and LAN IP not the same subnet\n");
    return JudgeOtherRoutes(row);
}
