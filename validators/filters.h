// The rows of the firewall's filters and of port triggering. Conventions in validators/check.h.
//
// A row is compared with the rows stored in the same table, but not with the one of the same index: a
// row is no duplicate of itself.
#pragma once

extern "C"
{
    // FwMacFilterTable: "MAC" is a MAC address in any letter case, and no other row has the same
    // address and the same "MAC_LIST".
    int validMacFilter(void* row);

    // Rows as in FwPortFilterTable: "Protocol" is tcp, udp or tcpudp, "DestIPAddress" an IPv4 address,
    // "DestPort" one port; no other row has the same three.
    int validPortFilter(void* row);

    // Rows as in FwIpFilterTable: "DestIPAddress" is an IPv4 address, and no other row has the same
    // address and the same "IP_LIST".
    int validIpFilter(void* row);

    // FwPortTriggerTable: both protocols are tcp or udp, both ports one port or a rising range.
    int validPortTrigger(void* row);
}
