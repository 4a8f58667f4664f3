// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/requests/request.h"
#include "daemon/base/messages.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kPrefix = "Evt";  // of every name; a person may leave it out

Failure FindEvent(const std::string& name, const NetworkEvent** event)
{
    *event = FindNamed(kNetworkEvents, name.starts_with(kPrefix) ? name : std::string(kPrefix) + name);
    if (*event != nullptr) return {};
    Words names;
    for (const NetworkEvent& one : kNetworkEvents) names.emplace_back(one.name + kPrefix.size());
    return {kWrongUse, "there is no event " + name + ", the events are " + Joined(names)};
}
}  // namespace

Outcome CommandEvent(const Options& options, const Words& words)
{
    const NetworkEvent* event = nullptr;
    if (Failure failure = FindEvent(words[0], &event)) return failure;
    const size_t length = words.size() > 1 ? words[1].size() + 1 : 0;  // the daemon reads the text to its zero byte
    kobd_client* client = nullptr;
    int code = kobd_client_open(&client);
    if (code == KOBD_SUCCESS)
    {
        kobd_client_set_timeout(client, TimeoutFor(options, {}));
        code = kobd_send_event(client, KOBD_MODULE_DAEMON, event->id, length != 0 ? words[1].c_str() : nullptr, length);
        kobd_client_close(client);
    }
    if (code == KOBD_BUFFER_LIMIT) return Failure{code, TooLarge("this text") + "; nothing was sent"};
    return FailureOf({.code = code, .from_bus = true, .timeout_ms = TimeoutFor(options, {})}, event->name);
}
}  // namespace kobd::client
