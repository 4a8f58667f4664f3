// The protocols that a port rule may name.
#pragma once

#include <string_view>

namespace kobd
{
constexpr bool IsForwardProtocol(std::string_view protocol)
{
    return protocol == "tcp" || protocol == "udp" || protocol == "tcpudp";
}
}  // namespace kobd
