// Finding and sending network events.
#include "client/requests/network_event.h"

#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kPrefix = "Evt";  // of every name; a person may leave it out
}

Words EventNames()
{
    Words names;
    for (const NetworkEvent& one : kNetworkEvents) names.emplace_back(one.name + kPrefix.size());
    return names;
}

Failure FindEvent(const std::string& name, const NetworkEvent** event)
{
    *event = FindNamed(kNetworkEvents, name.starts_with(kPrefix) ? name : std::string(kPrefix) + name);
    if (*event != nullptr) return {};
    return {kWrongUse, "there is no event " + name + ", the events are " + Joined(EventNames())};
}

Failure CheckEventText(const NetworkEvent& event, const std::string& text)
{
    if (event.id != kEvtApnIPChange || ReadInteger(text, 1, kApnMax)) return {};
    return {kWrongUse, std::string(event.name + kPrefix.size()) + " takes the number of an APN profile, 1 to " +
                           std::to_string(kApnMax) + (text.empty() ? "" : ", not '" + text + "'")};
}

bool IsTextRead(const NetworkEvent& event) { return event.id == kEvtApnIPChange || event.id == kEvtEthernetIPAdd; }

Failure SendEvent(const Options& options, const NetworkEvent& event, const std::string& text)
{
    const size_t length = text.empty() ? 0 : text.size() + 1;  // the daemon reads the text to its zero byte
    const char* payload = length != 0 ? text.c_str() : nullptr;
    const Response response =
        WithClient(options, [&](kobd_client* client)
                   { return kobd_send_event(client, KOBD_MODULE_DAEMON, event.id, payload, length); });
    if (response.too_large) return Failure{response.code, TooLarge("this text") + "; nothing was sent"};
    return FailureOf(response, event.name);
}
}  // namespace kobd::client
