// The rows of the static IPv4 routes. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // IPv4RoutingTable: "Netmask" has all ones before all zeros and is not 0.0.0.0, "IP" is a network
    // address under it, "Gateway" is an address that validLanIp takes when "Interface" is LAN. No row of
    // another index has the same "IP" and "Netmask".
    int validNetWorkStaticRouteList(void* row);
}
