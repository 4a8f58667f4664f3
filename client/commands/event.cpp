// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include "client/commands/commands.h"
#include "client/dictionary/events.h"
#include "client/requests/request.h"
#include "daemon/base/result.h"

namespace kobd::client
{
Outcome CommandEvent(const Options& options, const Words& words)
{
    const NetworkEvent* event = FindEvent(words[0]);
    if (event == nullptr)
    {
        Words names;
        for (const NetworkEvent& one : Events()) names.emplace_back(ShortName(one));
        return Failure{kWrongUse, "there is no event " + words[0] + ", the events are " + Joined(names)};
    }
    const size_t length = words.size() > 1 ? words[1].size() + 1 : 0;  // the daemon reads the text to its zero byte
    kobd_client* client = nullptr;
    int code = kobd_client_open(&client);
    if (code == KOBD_SUCCESS)
    {
        kobd_client_set_timeout(client, TimeoutFor(options, {}));
        code = kobd_send_event(client, KOBD_MODULE_DAEMON, event->id, length != 0 ? words[1].c_str() : nullptr, length);
        kobd_client_close(client);
    }
    if (code == KOBD_BUFFER_LIMIT)
        return Failure{code, "this text does not fit one message of 8192 bytes; nothing was sent"};
    return FailureOf({.code = code, .from_bus = true, .timeout_ms = TimeoutFor(options, {})}, event->name);
}
}  // namespace kobd::client
