// Filters by MAC address, port and IPv4 address, and the triggering of ports.
#include <cstring>
#include <string_view>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "platform/lists.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/filters.h"
#include "validators/protocol.h"
#include "validators/rows.h"

using namespace kobd;

namespace
{
FieldCopy UpperField(const void* row, TextField field)
{
    FieldCopy text(row, field);
    memmove(text.Text(), StringUpper(text.Text()), text.View().size() + 1);
    return text;
}

int RefusePortFilter(const char* why)
{
    LOG_ALWAYS("validPortFilter", "%s", why);
    return kInvalidArgument;
}

int RefusePortTrigger(const char* why)
{
    LOG_ALWAYS("validPortTrigger", "%s", why);
    return kInvalidArgument;
}

bool IsTriggerProtocol(std::string_view protocol) { return protocol == "tcp" || protocol == "udp"; }
}  // namespace

int validMacFilter(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    const FieldCopy mac = UpperField(row, MacFilterRow::kMac);
    if (validMac(mac.Text()) != kSuccess) return kInvalidArgument;

    char other[MacFilterRow::kSize] = {};
    OtherRows others(securityMacFilterLsitNext, RowIndex(row), other);
    while (others.Read())
        if (UpperField(other, MacFilterRow::kMac).View() == mac.View() && SameField(row, other, MacFilterRow::kMacList))
            return kInvalidArgument;
    return others.Result();
}

int validPortFilter(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    if (!IsForwardProtocol(FieldView(row, PortFilterRow::kProtocol))) return RefusePortFilter("invalid protocol\n");
    if (validIpv4(FieldCopy(row, PortFilterRow::kDestIpAddress).Text()) != kSuccess)
        return RefusePortFilter("invalid ipv4\n");
    if (validPortRange(FieldCopy(row, PortFilterRow::kDestPort).Text()) != kSuccess)
        return RefusePortFilter("invalid port\n");

    const RowBlock other = NewRowBlock(PortFilterRow::kSize);
    if (other == nullptr) return RefusePortFilter("no enough memory\n");
    OtherRows others(securityPortFilterLsitNext, RowIndex(row), other.get());
    while (others.Read())
        if (SameField(row, other.get(), PortFilterRow::kProtocol) &&
            SameField(row, other.get(), PortFilterRow::kDestIpAddress) &&
            SameField(row, other.get(), PortFilterRow::kDestPort))
            return RefusePortFilter("the entry has been in list\n");
    return others.Result();
}

int validIpFilter(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    const FieldCopy address(row, IpFilterRow::kDestIpAddress);
    if (address.Empty()) return kInvalidArgument;
    if (validIpv4(address.Text()) != kSuccess)
    {
        LOG_ALWAYS("validIpFilter", "invalid ipv4\n");
        return kInvalidArgument;
    }

    char other[IpFilterRow::kSize] = {};
    OtherRows others(securityIpFilterListNext, RowIndex(row), other);
    while (others.Read())
        if (SameField(row, other, IpFilterRow::kDestIpAddress) && SameField(row, other, IpFilterRow::kIpList))
            return kInvalidArgument;
    return others.Result();
}

int validPortTrigger(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    if (!IsTriggerProtocol(FieldView(row, PortTriggerRow::kOutProtocol)) ||
        !IsTriggerProtocol(FieldView(row, PortTriggerRow::kInProtocol)))
        return RefusePortTrigger("Proto not valid");
    if (validPortFormat(FieldCopy(row, PortTriggerRow::kOutPort).Text()) != 1 ||
        validPortFormat(FieldCopy(row, PortTriggerRow::kInPort).Text()) != 1)
        return RefusePortTrigger("Port not valid");
    return kSuccess;
}
