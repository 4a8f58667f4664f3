// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "client/commands.h"
#include "client/events.h"
#include "daemon/result.h"
#include "platform/bus_client.h"

namespace kobd::client
{
int CommandEvent(const Options& options, const Words& words)
{
    const EventEntry* event = FindEvent(words[0]);
    if (event == nullptr)
    {
        std::string names;
        for (const EventEntry& one : Events()) names += std::string(names.empty() ? "" : ", ") + ShortName(one);
        Fail(options, kInvalidArgument, "there is no event " + words[0] + ", the events are " + names);
        return 2;
    }
    // The daemon reads the text to its zero byte.
    const size_t length = words.size() > 1 ? words[1].size() + 1 : 0;
    if (length > kPayloadMax)
        return Fail(options, kBufferLimit, "this text does not fit one message of 8192 bytes; nothing was sent");
    alignas(MessageHeader) static char bytes[kMessageMax];
    auto* message = reinterpret_cast<MessageHeader*>(bytes);
    message->destination = kModuleKobd;
    message->message_class = kClassEvent;
    message->id = event->id;
    message->length = static_cast<uint16_t>(length);
    if (length > 0) memcpy(message + 1, words[1].c_str(), length);
    BusClient client;
    int code = BusClientOpen(&client);
    if (code == 0) code = BusClientSend(&client, message, options.timeout_ms);
    BusClientClose(&client);
    return code == 0 ? 0 : FailRequest(options, code, true, event->name);
}
}  // namespace kobd::client
