// The row checks of the address binding, the static routes and the speed dial numbers. Conventions
// of rows as in validators/filters.h.
#pragma once

extern "C"
{
    // IpMacBindTable: "IP" is an IPv4 address of the LAN inside the pool of the LAN's address
    // server and not the router's own, "MAC" is no broadcast address, and no other row binds
    // either. The LAN's values are those that the request in hand will leave.
    int validBundledAddress(void* row);

    // IPv4RoutingTable: "Netmask" has its ones at the top and is not 0.0.0.0, "IP" is a network
    // address under it, "Gateway" lies in the LAN when "Interface" is LAN; no other row has the
    // same "IP" and "Netmask".
    int validNetWorkStaticRouteList(void* row);

    // SpeedDialTable: "SpeedDialNumber" is 1 to 99 in one or two digits, "ActureNumber" at most 32
    // of the keys of a telephone, "Description" at most 31 of its allowed characters; no other row
    // has the same number (5 and 05 are the same).
    int speedDialListValid(void* row);
}
