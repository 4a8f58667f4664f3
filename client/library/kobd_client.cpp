// The client library: a plain C face over the bus and the item reader and writer.
#include "client/library/kobd_client.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <new>

#include "daemon/result.h"
#include "daemon/tlv.h"
#include "platform/bus_client.h"

using namespace kobd;

namespace
{
constexpr int kDefaultTimeoutMs = 5000;
constexpr int kStopLookMs = 50;  // how long a stopped watch may take to notice

struct Message
{
    alignas(MessageHeader) std::array<char, kMessageMax> bytes{};

    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes.data()); }
    std::span<char> Room() { return std::span(bytes).subspan(sizeof(MessageHeader)); }
    std::span<const char> Payload() { return Room().first(Header()->length); }
};

// The next item as the C face shows it; false at the end and at items that run past the payload.
bool ReadItem(TlvReader& reader, kobd_item* out)
{
    const auto item = reader.Next();
    if (!item) return false;
    const auto text = item->Text();
    *out = {item->tag, static_cast<uint16_t>(item->value.size()), item->value.data(), text ? text->data() : nullptr,
            item->Int().value_or(0)};
    return true;
}

void Address(MessageHeader* header, uint32_t module, MessageClass message_class, uint16_t id, size_t length)
{
    *header = {};
    header->destination = module;
    header->message_class = message_class;
    header->id = id;
    header->length = static_cast<uint16_t>(length);
}
}  // namespace

struct kobd_items
{
    std::array<char, kPayloadMax> bytes;
    TlvWriter writer{bytes};
};

struct kobd_client
{
    BusClient bus;
    int timeout_ms = kDefaultTimeoutMs;
    bool answered = false;
    Message request;
    Message reply;
    TlvReader reader{{}};
};

struct kobd_watch
{
    BusClient bus;
    Message message;
    TlvReader reader{{}};
    std::atomic<bool> stopped = false;
};

const char* kobd_result_text(int code) { return ResultText(code); }

kobd_items* kobd_items_new(void) { return new (std::nothrow) kobd_items; }

void kobd_items_free(kobd_items* items) { delete items; }

int kobd_items_add_text(kobd_items* items, uint16_t tag, const char* text)
{
    return items->writer.Text(tag, text) ? kSuccess : kBufferLimit;
}

int kobd_items_add_number(kobd_items* items, uint16_t tag, int32_t number)
{
    return items->writer.Int(tag, number) ? kSuccess : kBufferLimit;
}

int kobd_client_open(kobd_client** client)
{
    *client = new (std::nothrow) kobd_client;
    if (*client == nullptr) return kMallocFailed;
    const int code = BusClientOpen(&(*client)->bus);
    if (code == kSuccess) return kSuccess;
    delete *client;
    *client = nullptr;
    return code;
}

void kobd_client_close(kobd_client* client)
{
    if (client == nullptr) return;
    BusClientClose(&client->bus);
    delete client;
}

void kobd_client_set_timeout(kobd_client* client, int milliseconds) { client->timeout_ms = std::max(milliseconds, 0); }

int kobd_call(kobd_client* client, enum kobd_request request, const kobd_items* items)
{
    const size_t length = items != nullptr ? items->writer.Size() : 0;
    if (length != 0) memcpy(client->request.Room().data(), items->bytes.data(), length);
    Address(client->request.Header(), kModuleKobd, kClassRequest, static_cast<uint16_t>(request), length);
    client->reader = TlvReader({});
    const int code = BusClientCall(&client->bus, client->request.Header(), client->reply.Header(), client->timeout_ms);
    client->answered = code == kSuccess;
    if (code != kSuccess) return code;
    kobd_reply_rewind(client);
    TlvReader first(client->reply.Payload());
    const auto result = first.Next();
    if (result && result->tag == kTagResult && result->Int()) return *result->Int();
    client->answered = false;
    return kInvalidArgument;
}

int kobd_answered(const kobd_client* client) { return client->answered ? 1 : 0; }

int kobd_reply_next(kobd_client* client, kobd_item* item) { return ReadItem(client->reader, item) ? 1 : 0; }

void kobd_reply_rewind(kobd_client* client)
{
    client->reader = TlvReader(client->reply.Payload());
    client->reader.Next();  // the result, which kobd_call has returned
}

int kobd_get(kobd_client* client, const char* name, char* value, size_t size)
{
    kobd_items items;
    if (const int code = kobd_items_add_text(&items, KOBD_TAG_OBJECT_NAME, name)) return code;
    if (const int code = kobd_call(client, KOBD_GET, &items)) return code;
    kobd_item item{};
    while (kobd_reply_next(client, &item) != 0)
    {
        if (item.tag != KOBD_TAG_VALUE || item.text == nullptr) continue;
        if (item.length > size) return kBufferLimit;
        memcpy(value, item.value, item.length);
        return kSuccess;
    }
    // A name that cannot be read is left out of the reply, which does not say why.
    return kNotFound;
}

int kobd_set(kobd_client* client, const char* const* names, const char* const* values, size_t count)
{
    kobd_items items;
    for (size_t i = 0; i < count; ++i)
    {
        if (const int code = kobd_items_add_text(&items, KOBD_TAG_OBJECT_NAME, names[i])) return code;
        if (const int code = kobd_items_add_text(&items, KOBD_TAG_VALUE, values[i])) return code;
    }
    return kobd_call(client, KOBD_SET, &items);
}

int kobd_send_event(kobd_client* client, uint32_t module, uint16_t id, const void* payload, size_t length)
{
    if (length > kPayloadMax) return kBufferLimit;
    if (length != 0) memcpy(client->request.Room().data(), payload, length);
    Address(client->request.Header(), module, kClassEvent, id, length);
    return BusClientSend(&client->bus, client->request.Header(), client->timeout_ms);
}

int kobd_watch_open(kobd_watch** watch, uint32_t module)
{
    *watch = new (std::nothrow) kobd_watch;
    if (*watch == nullptr) return kMallocFailed;
    const int code = BusClientJoin(&(*watch)->bus, module);
    if (code == kSuccess) return kSuccess;
    delete *watch;
    *watch = nullptr;
    return code;
}

void kobd_watch_close(kobd_watch* watch)
{
    if (watch == nullptr) return;
    BusClientClose(&watch->bus);
    delete watch;
}

int kobd_watch_next(kobd_watch* watch, int milliseconds, uint16_t* id)
{
    for (int left = milliseconds; !watch->stopped; left -= kStopLookMs)
    {
        const bool endless = milliseconds < 0;
        const int code = BusClientReceive(&watch->bus, watch->message.Header(),
                                          endless ? kStopLookMs : std::clamp(left, 0, kStopLookMs));
        if (code == kReplyTimeout && (endless || left > kStopLookMs)) continue;
        if (code != kSuccess) return code;
        watch->reader = TlvReader(watch->message.Payload());
        *id = watch->message.Header()->id;
        return kSuccess;
    }
    return kNotRunning;
}

int kobd_watch_item(kobd_watch* watch, kobd_item* item) { return ReadItem(watch->reader, item) ? 1 : 0; }

void kobd_watch_stop(kobd_watch* watch) { watch->stopped = true; }
