// Requests to the daemon.
#include "client/request.h"

#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
Response Decode(const MessageHeader* reply)
{
    Response response;
    TlvReader reader({reinterpret_cast<const char*>(reply + 1), reply->length});
    const auto result = reader.Next();
    if (!result || result->tag != kTagResult || !result->Int()) return {.code = kSystemError, .from_bus = true};
    response.code = *result->Int();
    while (const auto item = reader.Next())
        if (const auto text = item->Text()) response.items.emplace_back(item->tag, *text);
    return response;
}
}  // namespace

Response Call(uint16_t id, const Items& items, int timeout_ms)
{
    alignas(MessageHeader) static char request[kMessageMax];
    alignas(MessageHeader) static char reply[kMessageMax];
    auto* header = reinterpret_cast<MessageHeader*>(request);
    TlvWriter writer({request + sizeof(MessageHeader), kPayloadMax});
    for (const auto& [tag, text] : items)
        if (!writer.Text(tag, text)) return {.code = kBufferLimit, .too_large = true};
    *header = {};
    header->destination = kModuleKobd;
    header->message_class = kClassRequest;
    header->id = id;
    header->length = static_cast<uint16_t>(writer.Size());

    BusClient client;
    if (const int code = BusClientOpen(&client)) return {.code = code, .from_bus = true};
    auto* answered = reinterpret_cast<MessageHeader*>(reply);
    const int code = BusClientCall(&client, header, answered, timeout_ms);
    BusClientClose(&client);
    return code != 0 ? Response{.code = code, .from_bus = true} : Decode(answered);
}
}  // namespace kobd::client
