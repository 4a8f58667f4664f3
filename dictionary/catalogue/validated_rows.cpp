// Holds the places in validators/row_layouts.h to the catalogue's: a field that lies elsewhere than
// the catalogue's column of its name stops the build.
#include <string_view>

#include "dictionary/catalogue/layouts.h"
#include "validators/row_layouts.h"

namespace kobd
{
namespace
{
constexpr bool Is(const RowLayout& layout, std::string_view column, TextField field)
{
    for (const ColumnDef& one : layout.columns)
        if (one.name == column)
            return one.offset == field.offset && one.length == field.width && FieldWidth(one) == field.width &&
                   field.width <= kWidestField;
    return false;
}

constexpr bool IsBinary(const RowLayout& layout, std::string_view column, ValueType type, uint32_t offset)
{
    for (const ColumnDef& one : layout.columns)
        if (one.name == column) return one.type == type && one.offset == offset;
    return false;
}

#define SIZE(layout, row) static_assert((layout).row_size == row::kSize, #row)
#define TEXT(layout, column, field) static_assert(Is(layout, column, field), #field)

SIZE(kFwMacFilter, MacFilterRow);
TEXT(kFwMacFilter, "MAC_LIST", MacFilterRow::kMacList);
TEXT(kFwMacFilter, "MAC", MacFilterRow::kMac);

SIZE(kFwPortFilter, PortFilterRow);
TEXT(kFwPortFilter, "Protocol", PortFilterRow::kProtocol);
TEXT(kFwPortFilter, "DestIPAddress", PortFilterRow::kDestIpAddress);
TEXT(kFwPortFilter, "DestPort", PortFilterRow::kDestPort);

SIZE(kFwIpFilter, IpFilterRow);
TEXT(kFwIpFilter, "DestIPAddress", IpFilterRow::kDestIpAddress);
TEXT(kFwIpFilter, "IP_LIST", IpFilterRow::kIpList);

SIZE(kFwUrlFilter, UrlFilterRow);
TEXT(kFwUrlFilter, "URL", UrlFilterRow::kUrl);

SIZE(kFwPortForward, PortForwardRow);
TEXT(kFwPortForward, "Protocol", PortForwardRow::kProtocol);
TEXT(kFwPortForward, "DestIPAddress", PortForwardRow::kDestIpAddress);
TEXT(kFwPortForward, "DestPort", PortForwardRow::kDestPort);
TEXT(kFwPortForward, "SrcPort", PortForwardRow::kSrcPort);
TEXT(kFwPortForward, "MinPort", PortForwardRow::kMinPort);
TEXT(kFwPortForward, "MaxPort", PortForwardRow::kMaxPort);

SIZE(kFwAccessRestriction, AccessRestrictionRow);
TEXT(kFwAccessRestriction, "Name", AccessRestrictionRow::kName);
TEXT(kFwAccessRestriction, "Weekdays", AccessRestrictionRow::kWeekdays);
TEXT(kFwAccessRestriction, "TimeStart", AccessRestrictionRow::kTimeStart);
TEXT(kFwAccessRestriction, "TimeStop", AccessRestrictionRow::kTimeStop);
TEXT(kFwAccessRestriction, "Host", AccessRestrictionRow::kHost);

SIZE(kFwParentControl, ParentControlRow);
TEXT(kFwParentControl, "Name", ParentControlRow::kName);
TEXT(kFwParentControl, "Weekdays", ParentControlRow::kWeekdays);
TEXT(kFwParentControl, "TimeStart", ParentControlRow::kTimeStart);
TEXT(kFwParentControl, "TimeStop", ParentControlRow::kTimeStop);
TEXT(kFwParentControl, "Host", ParentControlRow::kHost);

SIZE(kFwPortTrigger, PortTriggerRow);
TEXT(kFwPortTrigger, "OutProtocol", PortTriggerRow::kOutProtocol);
TEXT(kFwPortTrigger, "OutPort", PortTriggerRow::kOutPort);
TEXT(kFwPortTrigger, "InProtocol", PortTriggerRow::kInProtocol);
TEXT(kFwPortTrigger, "InPort", PortTriggerRow::kInPort);

SIZE(kFwNewParentControl, NewParentControlRow);
TEXT(kFwNewParentControl, "Enable", NewParentControlRow::kEnable);
TEXT(kFwNewParentControl, "Name", NewParentControlRow::kName);
TEXT(kFwNewParentControl, "Host", NewParentControlRow::kHost);
TEXT(kFwNewParentControl, "Time", NewParentControlRow::kTime);

SIZE(kIpMacBind, BundledAddressRow);
static_assert(IsBinary(kIpMacBind, "IP", VT_IPV4, BundledAddressRow::kIpOffset));
static_assert(IsBinary(kIpMacBind, "MAC", VT_MAC, BundledAddressRow::kMacOffset));

SIZE(kSpeedDial, SpeedDialRow);
TEXT(kSpeedDial, "SpeedDialNumber", SpeedDialRow::kSpeedDialNumber);
TEXT(kSpeedDial, "ActureNumber", SpeedDialRow::kActureNumber);
TEXT(kSpeedDial, "Description", SpeedDialRow::kDescription);

SIZE(kIPv4Routing, StaticRouteRow);
TEXT(kIPv4Routing, "IP", StaticRouteRow::kIp);
TEXT(kIPv4Routing, "Netmask", StaticRouteRow::kNetmask);
TEXT(kIPv4Routing, "Interface", StaticRouteRow::kInterface);
TEXT(kIPv4Routing, "Gateway", StaticRouteRow::kGateway);

SIZE(kApnConfig, ApnConfigRow);
TEXT(kApnConfig, "ApnEnable", ApnConfigRow::kApnEnable);
}  // namespace
}  // namespace kobd
