// Finding and sending network events.
#include "client/requests/network_event.h"

#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kPrefix = "Evt";  // of every name; a person may leave it out
}

Failure FindEvent(const std::string& name, const NetworkEvent** event)
{
    *event = FindNamed(kNetworkEvents, name.starts_with(kPrefix) ? name : std::string(kPrefix) + name);
    if (*event != nullptr) return {};
    Words names;
    for (const NetworkEvent& one : kNetworkEvents) names.emplace_back(one.name + kPrefix.size());
    return {kWrongUse, "there is no event " + name + ", the events are " + Joined(names)};
}

Failure SendEvent(const Options& options, const NetworkEvent& event, const std::string& text)
{
    const size_t length = text.empty() ? 0 : text.size() + 1;  // the daemon reads the text to its zero byte
    kobd_client* client = nullptr;
    int code = kobd_client_open(&client);
    if (code == KOBD_SUCCESS)
    {
        kobd_client_set_timeout(client, TimeoutFor(options, {}));
        code = kobd_send_event(client, KOBD_MODULE_DAEMON, event.id, length != 0 ? text.c_str() : nullptr, length);
        kobd_client_close(client);
    }
    if (code == KOBD_BUFFER_LIMIT) return Failure{code, TooLarge("this text") + "; nothing was sent"};
    return FailureOf({.code = code, .from_bus = true, .timeout_ms = TimeoutFor(options, {})}, event.name);
}
}  // namespace kobd::client
