// The client library: a plain C face over the bus and the item reader and writer.
#include "client/library/kobd_client.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "platform/bus_client.h"

using namespace kobd;

// The header repeats for its callers what the daemon's own headers say.
static_assert(KOBD_SUCCESS == kSuccess && KOBD_NOT_FOUND == kNotFound && KOBD_INVALID == kInvalidArgument);
static_assert(KOBD_NOT_RUNNING == kNotRunning && KOBD_SYSTEM_ERROR == kSystemError && KOBD_SEND_FAILED == kSendFailed);
static_assert(KOBD_NO_MEMORY == kMallocFailed && KOBD_TIMEOUT == kReplyTimeout);
static_assert(KOBD_INITIALIZE_FAILED == kInitializeFailed && KOBD_BUFFER_LIMIT == kBufferLimit);
static_assert(KOBD_VALUE_MAX == kValueBuffer && KOBD_PAYLOAD_MAX == kPayloadMax);
static_assert(int{KOBD_TAG_RESULT} == kTagResult && int{KOBD_TAG_OBJECT_NAME} == kTagObjectName);
static_assert(int{KOBD_TAG_VALUE} == kTagValue && int{KOBD_TAG_TABLE_NAME} == kTagTableName);
static_assert(int{KOBD_TAG_ROW_INDEX} == kTagRowIndex && int{KOBD_TAG_COLUMN_NAME} == kTagColumnName);
static_assert(int{KOBD_TAG_PARENT_PATH} == kTagParentPath);
static_assert(int{KOBD_SET} == kReqObjSet && int{KOBD_GET} == kReqObjGet && int{KOBD_SET_SILENT} == kReqObjSetSilent);
static_assert(int{KOBD_UPDATE} == kReqUpdate && int{KOBD_TABLE_MAX_ROW} == kReqTableMaxRow);
static_assert(int{KOBD_TABLE_ELEMENT_COUNT} == kReqTableElementCount && int{KOBD_TABLE_ADD} == kReqTableAdd);
static_assert(int{KOBD_TABLE_DEL} == kReqTableDel && int{KOBD_TABLE_GET} == kReqTableGet);
static_assert(int{KOBD_TABLE_SET} == kReqTableSet && int{KOBD_TABLE_SET_SILENT} == kReqTableSetSilent);
static_assert(int{KOBD_TABLE_DUMP} == kReqTableDump && int{KOBD_SHOW} == kReqShow);
static_assert(int{KOBD_SUB_TABLE_ADD} == kREQSubTableAdd);
static_assert(int{KOBD_TAP_RECEIVED} == kTapReceived && int{KOBD_TAP_ANSWERED} == kTapAnswered);
static_assert(int{KOBD_TAP_SENT} == kTapSent);
static_assert(int{KOBD_HOST_STATE} == kHostState && int{KOBD_HOST_FACTORY} == kHostFactory);
static_assert(int{KOBD_HOST_SIM_SET} == kHostSimSet && int{KOBD_HOST_SIM_SET_ANNOUNCED} == kHostSimSetAnnounced);
static_assert(int{KOBD_HOST_SIM_ROW_ADD} == kHostSimRowAdd && int{KOBD_HOST_SIM_ROW_SET} == kHostSimRowSet);
static_assert(int{KOBD_HOST_SIM_ROW_DEL} == kHostSimRowDel && int{KOBD_HOST_SIM_FAIL} == kHostSimFail);
static_assert(int{KOBD_HOST_SIM_SLOW} == kHostSimSlow && int{KOBD_HOST_SIM_LIST} == kHostSimList);
static_assert(int{KOBD_HOST_SIM_CLEAR} == kHostSimClear);
static_assert(KOBD_MODULE_DAEMON == kModuleKobd && KOBD_MODULE_NOTIFY == kModuleNotify);
static_assert(KOBD_MODULE_SERVICES == kModuleServices && KOBD_MODULE_FORWARD == kModuleForward);

namespace
{
constexpr int kDefaultTimeoutMs = 5000;
constexpr int kStopLookMs = 50;  // how long a stopped watch may take to notice

struct Message
{
    alignas(MessageHeader) std::array<char, kMessageMax> bytes{};

    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes.data()); }
    const MessageHeader* Header() const { return reinterpret_cast<const MessageHeader*>(bytes.data()); }
    char* Room() { return bytes.data() + sizeof(MessageHeader); }
    kobd_bytes Payload() const { return {bytes.data() + sizeof(MessageHeader), Header()->length}; }
};

// Makes a message to the module. Result 11 when the payload is too long for one.
int Fill(Message* message, uint32_t module, MessageClass message_class, uint16_t id, const void* payload, size_t length)
{
    if (length > kPayloadMax) return kBufferLimit;
    if (length != 0) memcpy(message->Room(), payload, length);
    MessageHeader* header = message->Header();
    *header = {};
    header->destination = module;
    header->message_class = message_class;
    header->id = id;
    header->length = static_cast<uint16_t>(length);
    return kSuccess;
}

// Makes a client or a watch, whose connection `open` opens. Where that fails, *made is NULL.
template <class Connected, class Open>
int MakeConnected(Connected** made, Open open)
{
    *made = new (std::nothrow) Connected;
    if (*made == nullptr) return kMallocFailed;
    const int code = open(&(*made)->bus);
    if (code == kSuccess) return kSuccess;
    delete *made;
    *made = nullptr;
    return code;
}

template <class Connected>
void Close(Connected* connected)
{
    if (connected == nullptr) return;
    BusClientClose(&connected->bus);
    delete connected;
}

// Whether the payload is a result with sound items behind it, so that a caller who reads on never meets a broken one.
bool IsReply(kobd_bytes payload, kobd_item* result)
{
    if (kobd_bytes_next(&payload, result) != 1 || result->tag != kTagResult || result->length != sizeof(int32_t))
        return false;
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&payload, &item)) == 1)
        if (item.text == nullptr && item.length != sizeof(int32_t)) return false;
    return more == 0;
}
}  // namespace

struct kobd_items
{
    char* bytes = nullptr;  // from malloc
    size_t used = 0;
    size_t size = 0;

    kobd_items() = default;
    kobd_items(const kobd_items&) = delete;
    kobd_items& operator=(const kobd_items&) = delete;
    ~kobd_items() { free(bytes); }

    // Makes room for `more` bytes behind the used ones; false without memory.
    bool Grow(size_t more)
    {
        if (size - used >= more) return true;
        const size_t wanted = std::max(2 * size, used + more);
        auto* grown = static_cast<char*>(realloc(bytes, wanted));
        if (grown == nullptr) return false;
        bytes = grown;
        size = wanted;
        return true;
    }

    // Adds an item of at most `most` bytes. 0; 7 without memory; 11 when the item is too long.
    template <class Write>
    int Add(size_t most, Write write)
    {
        if (!Grow(most)) return kMallocFailed;
        TlvWriter writer({bytes + used, size - used});
        if (!write(&writer)) return kBufferLimit;
        used += writer.Size();
        return kSuccess;
    }
};

struct kobd_client
{
    BusClient bus;
    int timeout_ms = kDefaultTimeoutMs;
    bool answered = false;
    Message request;
    Message reply;
    kobd_bytes left = {};  // of the reply
};

struct kobd_watch
{
    BusClient bus;
    Message message;
    kobd_bytes left = {};  // of the message
    std::atomic<bool> stopped = false;
};

struct kobd_tap
{
    BusTap* bus = nullptr;
    BusTapped tapped = {};
    Message message;
};

const char* kobd_result_text(int code) { return ResultText(code); }

kobd_items* kobd_items_new(void) { return new (std::nothrow) kobd_items; }

void kobd_items_free(kobd_items* items) { delete items; }

int kobd_items_add_text(kobd_items* items, uint16_t tag, const char* text)
{
    const std::string_view value = text;
    return items->Add(kItemHeader + value.size() + 1, [&](TlvWriter* writer) { return writer->Text(tag, value); });
}

int kobd_items_add_number(kobd_items* items, uint16_t tag, int32_t number)
{
    return items->Add(kIntItem, [&](TlvWriter* writer) { return writer->Int(tag, number); });
}

const void* kobd_items_bytes(const kobd_items* items, size_t* size)
{
    *size = items->used;
    return items->bytes;
}

int kobd_bytes_next(kobd_bytes* bytes, kobd_item* out)
{
    TlvReader reader({static_cast<const char*>(bytes->next), bytes->left});
    const auto item = reader.Next();
    if (!item) return reader.Broken() ? -1 : 0;
    const auto text = item->Text();
    *out = {item->tag, static_cast<uint16_t>(item->value.size()), item->value.data(), text ? text->data() : nullptr,
            item->Int().value_or(0)};
    bytes->next = item->value.data() + item->value.size();
    bytes->left -= kItemHeader + item->value.size();
    return 1;
}

int kobd_client_open(kobd_client** client) { return MakeConnected(client, BusClientOpen); }

void kobd_client_close(kobd_client* client) { Close(client); }

void kobd_client_set_timeout(kobd_client* client, int milliseconds) { client->timeout_ms = std::max(milliseconds, 0); }

namespace
{
int CallClass(kobd_client* client, MessageClass message_class, uint16_t id, const kobd_items* items)
{
    client->left = {};
    client->answered = false;
    int code = Fill(&client->request, kModuleKobd, message_class, id, items != nullptr ? items->bytes : nullptr,
                    items != nullptr ? items->used : 0);
    if (code == kSuccess)
        code = BusClientCall(&client->bus, client->request.Header(), client->reply.Header(), client->timeout_ms);
    if (code != kSuccess) return code;
    kobd_item result{};
    if (!IsReply(client->reply.Payload(), &result)) return kSystemError;
    client->answered = true;
    kobd_reply_rewind(client);
    return result.number;
}
}  // namespace

int kobd_call(kobd_client* client, enum kobd_request request, const kobd_items* items)
{
    return CallClass(client, kClassRequest, static_cast<uint16_t>(request), items);
}

int kobd_host_call(kobd_client* client, enum kobd_host_control control, const kobd_items* items)
{
    return CallClass(client, kClassHostControl, static_cast<uint16_t>(control), items);
}

int kobd_answered(const kobd_client* client) { return client->answered ? 1 : 0; }

int kobd_reply_next(kobd_client* client, kobd_item* item) { return kobd_bytes_next(&client->left, item); }

void kobd_reply_rewind(kobd_client* client)
{
    if (!client->answered) return;
    kobd_item result{};
    client->left = client->reply.Payload();
    kobd_bytes_next(&client->left, &result);  // kobd_call has returned it
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
    if (const int code = Fill(&client->request, module, kClassEvent, id, payload, length)) return code;
    return BusClientSend(&client->bus, client->request.Header(), client->timeout_ms);
}

int kobd_module_look(uint32_t module, kobd_module* look)
{
    BusModule seen;
    const int error = BusModuleLook(module, &seen);
    *look = {seen.claimed ? 1 : 0, seen.queue ? 1 : 0, seen.messages, seen.capacity, seen.owner, seen.process};
    return error;
}

int kobd_watch_open(kobd_watch** watch, uint32_t module)
{
    return MakeConnected(watch, [&](BusClient* bus) { return BusClientJoin(bus, module); });
}

void kobd_watch_close(kobd_watch* watch) { Close(watch); }

int kobd_watch_next(kobd_watch* watch, int milliseconds, uint16_t* id)
{
    for (int left = milliseconds; !watch->stopped; left -= kStopLookMs)
    {
        const bool endless = milliseconds < 0;
        const int code = BusClientReceive(&watch->bus, watch->message.Header(),
                                          endless ? kStopLookMs : std::clamp(left, 0, kStopLookMs));
        if (code == kReplyTimeout && (endless || left > kStopLookMs)) continue;
        if (code != kSuccess) return code;
        watch->left = watch->message.Payload();
        *id = watch->message.Header()->id;
        return kSuccess;
    }
    return kNotRunning;
}

int kobd_watch_item(kobd_watch* watch, kobd_item* item) { return kobd_bytes_next(&watch->left, item) == 1 ? 1 : 0; }

kobd_bytes kobd_watch_payload(const kobd_watch* watch) { return watch->message.Payload(); }

void kobd_watch_stop(kobd_watch* watch) { watch->stopped = true; }

int kobd_tap_open(kobd_client* client, kobd_tap** tap)
{
    *tap = new (std::nothrow) kobd_tap;
    if (*tap == nullptr) return kMallocFailed;
    const int code = BusTapOpen(&client->bus, &(*tap)->bus, client->timeout_ms);
    if (code != kSuccess)
    {
        delete *tap;
        *tap = nullptr;
    }
    return code;
}

void kobd_tap_close(kobd_tap* tap)
{
    if (tap == nullptr) return;
    BusTapClose(tap->bus);
    delete tap;
}

int kobd_tap_next(kobd_tap* tap, int milliseconds, kobd_tapped* tapped)
{
    uint32_t missed = 0;
    const MessageHeader* header = tap->message.Header();
    const int code = BusTapNext(tap->bus, &tap->tapped, tap->message.Header(), &missed, milliseconds);
    if (code != kSuccess) return code;
    *tapped = {.kind = tap->tapped.kind,
               .missed = missed,
               .time_us = tap->tapped.time_us,
               .took_ns = tap->tapped.took_ns,
               .process = tap->tapped.process,
               .program = tap->tapped.program,
               .module = header->destination,
               .message_class = header->message_class,
               .id = header->id,
               .payload = tap->message.Payload(),
               .message = {header, sizeof *header + header->length}};
    return kSuccess;
}
