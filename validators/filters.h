// The row checks of the firewall's lists: filters, port forwarding and port triggering.
//
// Each is given a decoded row of its table, as bytes without alignment, and returns 0 to accept or
// 2 to refuse; no row at all is refused. Rows stored in the same table are read through the list's
// next operation, and the row of the same index is left out: a row is no duplicate of itself.
// Nothing is kept between calls. Called by table sets and by the platform libraries.
#pragma once

extern "C"
{
    // FwMacFilterTable: "MAC" is a MAC address, and no other row has the same address in the same
    // "MAC_LIST".
    int validMacFilter(void* row);

    // Rows as in FwPortFilterTable: "Protocol" is tcp, udp or tcpudp, "DestIPAddress" an IPv4
    // address, "DestPort" one port; no other row has the same three.
    int validPortFilter(void* row);

    // Rows as in FwIpFilterTable: "DestIPAddress" is an IPv4 address, and no other row has the
    // same address in the same "IP_LIST".
    int validIpFilter(void* row);

    // FwUrlFilterTable: "URL" is a host name with an optional port and path, with or without one
    // of the known schemes before it, and no bare IPv4 address.
    int validUrlFilter(void* row);

    // FwPortForwardTable and PortRedirectTable: "Protocol" as above, "SrcPort" a port or a rising
    // range, "DestIPAddress" an IPv4 address; no other row is the same, or claims one of the same
    // external ports for whatever protocol and host.
    //   An empty "SrcPort" is filled in the row from "MinPort" and "MaxPort", accepted or not.
    int securityPortForwardListValid(void* row);

    // FwPortTriggerTable: both protocols are tcp or udp, both ports a port or a rising range.
    int validPortTrigger(void* row);
}
