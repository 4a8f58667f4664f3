// Requests to the daemon.
#include "client/request.h"

#include <cstring>
#include <utility>

#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
constexpr size_t kPartsAtOnce = 100;  // more would only be asked in vain

Response Decode(const MessageHeader* reply)
{
    auto items = ReadItems({reinterpret_cast<const char*>(reply + 1), reply->length});
    const bool has_result =
        items && !items->empty() && items->front().tag == kTagResult && items->front().number.has_value();
    if (!has_result) return {.code = kSystemError, .from_bus = true};
    Response response = {.code = *items->front().number, .items = std::move(*items)};
    response.items.erase(response.items.begin());
    return response;
}
}  // namespace

std::optional<std::string> ItemBytes(const Items& items)
{
    size_t size = 0;
    for (const Item& item : items) size += item.number ? kIntItem : kItemHeader + item.text.size() + 1;
    std::string bytes(size, 0);
    TlvWriter writer(bytes);
    for (const Item& item : items)
        if (!(item.number ? writer.Int(item.tag, *item.number) : writer.Text(item.tag, item.text))) return std::nullopt;
    return bytes;
}

std::optional<Items> ReadItems(std::span<const char> bytes)
{
    Items items;
    TlvReader reader(bytes);
    while (const auto item = reader.Next())
    {
        if (!item->Text() && !item->Int()) return std::nullopt;
        items.emplace_back(item->tag, item->Text().value_or(""));
        items.back().number = item->Int();
    }
    if (reader.Broken()) return std::nullopt;
    return items;
}

Response Call(uint16_t id, const Items& items, int timeout_ms)
{
    alignas(MessageHeader) static char request[kMessageMax];
    alignas(MessageHeader) static char reply[kMessageMax];
    auto* header = reinterpret_cast<MessageHeader*>(request);
    const auto payload = ItemBytes(items);
    if (!payload || payload->size() > kPayloadMax) return {.code = kBufferLimit, .too_large = true};
    *header = {};
    header->destination = kModuleKobd;
    header->message_class = kClassRequest;
    header->id = id;
    header->length = static_cast<uint16_t>(payload->size());
    memcpy(header + 1, payload->data(), payload->size());

    BusClient client;
    if (const int code = BusClientOpen(&client)) return {.code = code, .from_bus = true};
    auto* answered = reinterpret_cast<MessageHeader*>(reply);
    const int code = BusClientCall(&client, header, answered, timeout_ms);
    BusClientClose(&client);
    return code != 0 ? Response{.code = code, .from_bus = true} : Decode(answered);
}

Response CallInParts(uint16_t id, std::span<const Items> parts, int timeout_ms, Items* answers)
{
    Response response = {.code = kBufferLimit};
    if (parts.size() <= kPartsAtOnce)
    {
        Items items;
        for (const Items& part : parts) items.insert(items.end(), part.begin(), part.end());
        response = Call(id, items, timeout_ms);
    }
    if (response.code == kBufferLimit && parts.size() > 1)
    {
        const size_t middle = parts.size() / 2;
        response = CallInParts(id, parts.first(middle), timeout_ms, answers);
        return response.code != 0 ? response : CallInParts(id, parts.subspan(middle), timeout_ms, answers);
    }
    answers->insert(answers->end(), response.items.begin(), response.items.end());
    return response;
}
}  // namespace kobd::client
