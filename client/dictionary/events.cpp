// The network events by name.
#include "client/dictionary/events.h"

namespace kobd::client
{
namespace
{
constexpr size_t kPrefix = std::string_view("Evt").size();

}  // namespace

std::span<const NetworkEvent> Events() { return kNetworkEvents; }

const char* ShortName(const NetworkEvent& event) { return event.name + kPrefix; }

const NetworkEvent* FindEvent(std::string_view name)
{
    for (const NetworkEvent& event : kNetworkEvents)
        if (name == event.name || name == ShortName(event)) return &event;
    return nullptr;
}

const NetworkEvent* FindEvent(uint16_t id)
{
    for (const NetworkEvent& event : kNetworkEvents)
        if (id == event.id) return &event;
    return nullptr;
}
}  // namespace kobd::client
