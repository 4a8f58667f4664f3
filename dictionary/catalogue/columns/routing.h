// Static routes and router advertisements.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// IPv4RoutingTable
inline constexpr ColumnDef kIPv4RoutingColumns[] = {
    {"IP",                  4, VT_STRING, 64},
    {"desIP",               4, VT_STRING, 64, "IP"},
    {"Netmask",            68, VT_STRING, 64},
    {"Subnetmask",         68, VT_STRING, 64, "Netmask"},
    {"Interface",         132, VT_STRING, 256},
    {"Gateway",           388, VT_STRING, 64},
    {"Status",            452, VT_STRING, 20},
    {"Enable",            472, VT_STRING, 64},
    {"Alias",             536, VT_STRING, 128},
    {"StaticRoute",       664, VT_STRING, 20},
    {"ForwardingPolicy",  684, VT_STRING, 20},
    {"Origin",            704, VT_STRING, 20},
    {"ForwardingMetric",  724, VT_STRING, 20},
};
inline constexpr RowLayout kIPv4Routing = {kIPv4RoutingColumns, 764};
static_assert(Fits(kIPv4Routing), "IPv4RoutingTable");

// IPv6RoutingTable
inline constexpr ColumnDef kIPv6RoutingColumns[] = {
    {"IP",                  4, VT_STRING, 64},
    {"desIP",               4, VT_STRING, 64, "IP"},
    {"PrefLegth",          68, VT_INT32,  4},
    {"Interface",          72, VT_STRING, 20},
    {"Gateway",            92, VT_STRING, 64},
    {"Status",            156, VT_STRING, 20},
    {"Enable",            176, VT_STRING, 64},
    {"Alias",             240, VT_STRING, 64},
    {"ForwardingPolicy",  304, VT_STRING, 64},
    {"Nexthop",           368, VT_STRING, 64},
    {"ForwardingMetric",  432, VT_STRING, 64},
    {"ExpirationTime",    560, VT_STRING, 64},
    {"DestIPPrefix",      496, VT_STRING, 64},
};
inline constexpr RowLayout kIPv6Routing = {kIPv6RoutingColumns, 644};
static_assert(Fits(kIPv6Routing), "IPv6RoutingTable");

// RouteRaTable
inline constexpr ColumnDef kRouteRaColumns[] = {
    {"PreferredRouteFlag",  260, VT_STRING, 32},
    {"INTERFACE",           292, VT_STRING, 32},
    {"ROUTELIFETIME",       324, VT_STRING, 32},
};
inline constexpr RowLayout kRouteRa = {kRouteRaColumns, 388};
static_assert(Fits(kRouteRa), "RouteRaTable");

// IPv4ForwardingTable
inline constexpr ColumnDef kIPv4ForwardingColumns[] = {
    {"Enable",             12, VT_STRING, 32},
    {"Status",             44, VT_STRING, 32},
    {"Alias",              76, VT_STRING, 32},
    {"StaticRoute",       108, VT_STRING, 32},
    {"DestIPAddress",     140, VT_STRING, 32},
    {"DestSubnetMask",    172, VT_STRING, 32},
    {"GatewayIPAddress",  204, VT_STRING, 32},
    {"Interface",         236, VT_STRING, 32},
    {"Origin",            268, VT_STRING, 32},
    {"ForwardingPolicy",    4, VT_UINT32, 4},
    {"ForwardingMetric",    8, VT_UINT32, 4},
};
inline constexpr RowLayout kIPv4Forwarding = {kIPv4ForwardingColumns, 332};
static_assert(Fits(kIPv4Forwarding), "IPv4ForwardingTable");

// IPv6ForwardingTable
inline constexpr ColumnDef kIPv6ForwardingColumns[] = {
    {"Enable",             12, VT_STRING, 32},
    {"Status",             44, VT_STRING, 32},
    {"Alias",              76, VT_STRING, 32},
    {"DestIPPrefix",      108, VT_STRING, 32},
    {"NextHop",           140, VT_STRING, 32},
    {"Interface",         172, VT_STRING, 32},
    {"ExpirationTime",    204, VT_STRING, 32},
    {"ForwardingPolicy",    4, VT_UINT32, 4},
    {"ForwardingMetric",    8, VT_UINT32, 4},
};
inline constexpr RowLayout kIPv6Forwarding = {kIPv6ForwardingColumns, 268};
static_assert(Fits(kIPv6Forwarding), "IPv6ForwardingTable");
}  // namespace kobd
