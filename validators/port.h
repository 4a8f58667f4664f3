// Ports and protocols. Conventions in validators/check.h.
#pragma once

#include <string_view>

namespace kobd
{
// The protocols of a port filter or a port forwarding rule: tcp, udp or tcpudp.
bool IsForwardProtocol(std::string_view protocol);
}  // namespace kobd

extern "C"
{
    // One port, 1 to 65535, without a leading zero.
    int validPortRange(const char* text);

    // Predicate: one port, or two with "-" between them of which the second is the greater; 1 to 65535
    // without leading zeros.
    int validPortFormat(const char* text);

    // Predicate: all, tcp, udp, tcpudp or icmp.
    int validProtocol(const char* text);
}
