// The network events by name.
#include "client/dictionary/events.h"

namespace kobd::client
{
namespace
{
constexpr size_t kPrefix = std::string_view("Evt").size();

#define EVENT(handler, id) {#handler, id},
constexpr EventEntry kEvents[] = {
#include "events/events.def"
};
#undef EVENT
}  // namespace

std::span<const EventEntry> Events() { return kEvents; }

const char* ShortName(const EventEntry& event) { return event.name + kPrefix; }

const EventEntry* FindEvent(std::string_view name)
{
    for (const EventEntry& event : kEvents)
        if (name == event.name || name == ShortName(event)) return &event;
    return nullptr;
}

const EventEntry* FindEvent(uint16_t id)
{
    for (const EventEntry& event : kEvents)
        if (id == event.id) return &event;
    return nullptr;
}
}  // namespace kobd::client
