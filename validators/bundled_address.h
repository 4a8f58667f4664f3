// The rows that bind an address of the LAN to a MAC address. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // IpMacBindTable: "IP" is an IPv4 address of the LAN inside the pool of the LAN's address server and
    // not the router's own, "MAC" is not the broadcast address, and no row of another index binds either
    // of them. The LAN's values are those that the request in hand will leave.
    int validBundledAddress(void* row);
}
