// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include <string>

#include "client/commands/commands.h"
#include "client/dictionary/events.h"
#include "client/library/kobd_client.h"
#include "daemon/base/result.h"

namespace kobd::client
{
int CommandEvent(const Options& options, const Words& words)
{
    const EventEntry* event = FindEvent(words[0]);
    if (event == nullptr)
    {
        std::string names;
        for (const EventEntry& one : Events()) names += std::string(names.empty() ? "" : ", ") + ShortName(one);
        return WrongUse(options, "there is no event " + words[0] + ", the events are " + names, "event");
    }
    // The daemon reads the text to its zero byte.
    const size_t length = words.size() > 1 ? words[1].size() + 1 : 0;
    kobd_client* client = nullptr;
    int code = kobd_client_open(&client);
    if (code != KOBD_SUCCESS) return FailRequest(options, code, true, event->name);
    kobd_client_set_timeout(client, options.timeout_ms);
    code = kobd_send_event(client, KOBD_MODULE_DAEMON, event->id, length != 0 ? words[1].c_str() : nullptr, length);
    kobd_client_close(client);
    if (code == KOBD_BUFFER_LIMIT)
        return Fail(options, code, "this text does not fit one message of 8192 bytes; nothing was sent");
    return code == KOBD_SUCCESS ? 0 : FailRequest(options, code, true, event->name);
}
}  // namespace kobd::client
