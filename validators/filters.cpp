// Filters by MAC address, port and IPv4 address, and the triggering of ports.
#include "validators/filters.h"

#include <cstring>

#include "platform/lists.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/check.h"
#include "validators/port.h"
#include "validators/rows.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
FieldCopy UpperField(const void* row, TextField field)
{
    FieldCopy text(row, field);
    memmove(text.Text(), StringUpper(text.Text()), text.View().size() + 1);
    return text;
}

bool IsTriggerProtocol(const void* row, TextField field) { return IsOneOf(FieldView(row, field), {"tcp", "udp"}); }

bool IsTriggerPort(const void* row, TextField field) { return validPortFormat(FieldCopy(row, field).Text()) == 1; }
}  // namespace

int validMacFilter(void* row)
{
    using Row = MacFilterRow;
    if (row == nullptr) return kInvalidArgument;
    const FieldCopy mac = UpperField(row, Row::kMac);
    if (validMac(mac.Text()) != kSuccess) return kInvalidArgument;

    char other[Row::kSize] = {};
    OtherRows others(securityMacFilterLsitNext, RowIndex(row), other);
    while (others.Read())
        if (UpperField(other, Row::kMac).View() == mac.View() && SameFields(row, other, {Row::kMacList}))
            return kInvalidArgument;
    return others.Result();
}

int validPortFilter(void* row)
{
    using Row = PortFilterRow;
    constexpr const char* kFunction = "validPortFilter";
    if (row == nullptr) return kInvalidArgument;
    if (!IsForwardProtocol(FieldView(row, Row::kProtocol))) return Refuse(kFunction, "invalid protocol\n");
    if (validIpv4(FieldCopy(row, Row::kDestIpAddress).Text()) != kSuccess) return Refuse(kFunction, "invalid ipv4\n");
    if (validPortRange(FieldCopy(row, Row::kDestPort).Text()) != kSuccess) return Refuse(kFunction, "invalid port\n");

    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return Refuse(kFunction, "no enough memory\n");
    OtherRows others(securityPortFilterLsitNext, RowIndex(row), other.get());
    while (others.Read())
        if (SameFields(row, other.get(), {Row::kProtocol, Row::kDestIpAddress, Row::kDestPort}))
            return Refuse(kFunction, "the entry has been in list\n");
    return others.Result();
}

int validIpFilter(void* row)
{
    using Row = IpFilterRow;
    if (row == nullptr) return kInvalidArgument;
    const FieldCopy address(row, Row::kDestIpAddress);
    if (address.Empty()) return kInvalidArgument;
    if (validIpv4(address.Text()) != kSuccess) return Refuse("validIpFilter", "invalid ipv4\n");

    char other[Row::kSize] = {};
    OtherRows others(securityIpFilterListNext, RowIndex(row), other);
    while (others.Read())
        if (SameFields(row, other, {Row::kDestIpAddress, Row::kIpList})) return kInvalidArgument;
    return others.Result();
}

int validPortTrigger(void* row)
{
    using Row = PortTriggerRow;
    constexpr const char* kFunction = "validPortTrigger";
    if (row == nullptr) return kInvalidArgument;
    if (!IsTriggerProtocol(row, Row::kOutProtocol) || !IsTriggerProtocol(row, Row::kInProtocol))
        return Refuse(kFunction, "Proto not valid");
    if (!IsTriggerPort(row, Row::kOutPort) || !IsTriggerPort(row, Row::kInPort))
        return Refuse(kFunction, "Port not valid");
    return kSuccess;
}
