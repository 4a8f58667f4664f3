// The rows of port forwarding and port redirection. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // FwPortForwardTable and PortRedirectTable: "Protocol" is tcp, udp or tcpudp, "SrcPort" one port or
    // a range that does not fall, "DestIPAddress" an IPv4 address. No row of another index is the same,
    // or claims one of the same external ports, whatever its protocol and its host.
    //   An empty "SrcPort" is filled in the row from "MinPort" and "MaxPort", accepted or not.
    int securityPortForwardListValid(void* row);
}
