// The network events by name, from the same list as the daemon's handlers.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "daemon/base/messages.h"

namespace kobd::client
{
std::span<const NetworkEvent> Events();

// By name, with the prefix Evt or without; by id. nullptr when there is none.
const NetworkEvent* FindEvent(std::string_view name);
const NetworkEvent* FindEvent(uint16_t id);

const char* ShortName(const NetworkEvent& event);  // without the prefix
}  // namespace kobd::client
