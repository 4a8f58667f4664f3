// The network events by name, from the same list as the daemon's handlers.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kobd::client
{
struct EventEntry
{
    const char* name;  // with the prefix Evt
    uint16_t id;
};

std::span<const EventEntry> Events();

// By name, with the prefix Evt or without; by id. nullptr when there is none.
const EventEntry* FindEvent(std::string_view name);
const EventEntry* FindEvent(uint16_t id);

const char* ShortName(const EventEntry& event);  // without the prefix
}  // namespace kobd::client
