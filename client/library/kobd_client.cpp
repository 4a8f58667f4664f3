// Requests and their replies: a plain C face over the bus and the item reader and writer.
#include "client/library/kobd_client.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>

#include "client/dictionary/dictionary.h"
#include "client/library/connection.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "platform/bus_client.h"

using namespace kobd;
using namespace kobd::client;

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
static_assert(int{KOBD_HOST_SIM_CLEAR} == kHostSimClear && int{KOBD_HOST_FAILED} == kHostFailed);
static_assert(KOBD_MODULE_DAEMON == kModuleKobd && KOBD_MODULE_NOTIFY == kModuleNotify);
static_assert(KOBD_MODULE_SERVICES == kModuleServices && KOBD_MODULE_FORWARD == kModuleForward);

namespace
{
constexpr size_t kNamesAtOnce = 100;  // a reply to more would not fit one message

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

kobd_items::~kobd_items() { free(bytes); }

bool kobd_items::Grow(size_t more)
{
    if (size - used >= more) return true;
    const size_t wanted = std::max(2 * size, used + more);
    auto* grown = static_cast<char*>(realloc(bytes, wanted));
    if (grown == nullptr) return false;
    bytes = grown;
    size = wanted;
    return true;
}

namespace
{
// Adds an item of at most `most` bytes. 0; 7 without memory; 11 when the item is too long.
template <class Write>
int AddItem(kobd_items* items, size_t most, Write write)
{
    if (!items->Grow(most)) return kMallocFailed;
    TlvWriter writer({items->bytes + items->used, items->size - items->used});
    if (!write(&writer)) return kBufferLimit;
    items->used += writer.Size();
    return kSuccess;
}
}  // namespace

const char* kobd_result_text(int code) { return ResultText(code); }

kobd_items* kobd_items_new(void) { return new (std::nothrow) kobd_items; }

void kobd_items_free(kobd_items* items) { delete items; }

int kobd_items_add_text(kobd_items* items, uint16_t tag, const char* text)
{
    const std::string_view value = text;
    return AddItem(items, kItemHeader + value.size() + 1, [&](TlvWriter* writer) { return writer->Text(tag, value); });
}

int kobd_items_add_number(kobd_items* items, uint16_t tag, int32_t number)
{
    return AddItem(items, kIntItem, [&](TlvWriter* writer) { return writer->Int(tag, number); });
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

const char* kobd_client_version(void) { return KOBD_CLIENT_VERSION; }

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

namespace kobd::client
{
int Ended(kobd_client* client, int code)
{
    client->code = code;
    return code;
}

int Ended(kobd_client* client, Explained why)
{
    client->explained = std::move(why);
    return Ended(client, client->explained->code);
}
}  // namespace kobd::client

namespace
{
// Forgets the call before: nothing is answered or explained yet.
void Begin(kobd_client* client)
{
    client->left = {};
    client->answered = false;
    client->explained.reset();
    client->changes.clear();
}

// Adds a text for a call that begins with it.
int AddText(kobd_client* client, kobd_items* items, uint16_t tag, const char* text)
{
    const int code = kobd_items_add_text(items, tag, text);
    if (code == kSuccess) return kSuccess;
    Begin(client);
    return Ended(client, code);
}

bool NamesCellularTable(kobd_bytes items)
{
    for (kobd_item item{}; kobd_bytes_next(&items, &item) == 1;)
        if (item.tag == kTagTableName && item.text != nullptr && IsCellularTable(item.text)) return true;
    return false;
}

// A check may refuse these, and says why in the log.
bool IsJudged(MessageClass message_class, uint16_t id)
{
    return message_class == kClassRequest &&
           (id == kReqObjSet || id == kReqObjSetSilent || id == kReqTableSet || id == kReqTableSetSilent);
}

int Send(kobd_client* client, MessageClass message_class, uint16_t id, kobd_bytes items)
{
    const int code = Fill(&client->request, kModuleKobd, message_class, id, items.next, items.left);
    if (code != kSuccess) return code;
    if (IsJudged(message_class, id)) client->log = {};
    client->waited_ms = client->timeout_ms.value_or(NamesCellularTable(items) ? kCellularTimeoutMs : kDefaultTimeoutMs);
    return BusClientCall(&client->bus, client->request.Header(), client->reply.Header(), client->waited_ms);
}

int CallClass(kobd_client* client, MessageClass message_class, uint16_t id, const kobd_items* items)
{
    Begin(client);
    const int code = Send(client, message_class, id,
                          items != nullptr ? kobd_bytes{items->bytes, items->used} : kobd_bytes{nullptr, 0});
    if (code != kSuccess) return Ended(client, code);
    kobd_item result{};
    if (!IsReply(client->reply.Payload(), &result)) return Ended(client, kSystemError);
    client->answered = true;
    kobd_reply_rewind(client);
    return Ended(client, result.number);
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

const char* kobd_not_saved(kobd_client* client)
{
    if (client->host_is_silent) return nullptr;
    const int code = kobd_host_call(client, KOBD_HOST_STATE, nullptr);
    const bool busy = !client->answered && kobd::client::DaemonIsBusy();
    client->host_is_silent = !client->answered && !busy;
    if (busy) return "it is not known whether that is saved, because kobd is busy";
    kobd_item item{};
    const bool told = code == kSuccess && kobd_reply_next(client, &item) == 1 && kobd_reply_next(client, &item) == 1;
    return told ? item.text : nullptr;
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
    if (const int code = AddText(client, &items, KOBD_TAG_OBJECT_NAME, name)) return code;
    if (const int code = kobd_call(client, KOBD_GET, &items)) return code;
    kobd_item item{};
    while (kobd_reply_next(client, &item) != 0)
    {
        if (item.tag != KOBD_TAG_VALUE || item.text == nullptr) continue;
        if (item.length > size) return Ended(client, kBufferLimit);
        memcpy(value, item.value, item.length);
        return kSuccess;
    }
    // A name that cannot be read is left out of the reply, which does not say why.
    return Ended(client, kNotFound);
}

namespace
{
using Values = std::map<std::string, std::string, std::less<>>;

int GetTogether(kobd_client* client, const char* const* names, size_t count, Values* values)
{
    kobd_items items;
    for (size_t i = 0; i < count; ++i)
        if (const int code = AddText(client, &items, KOBD_TAG_OBJECT_NAME, names[i])) return code;
    if (const int code = kobd_call(client, KOBD_GET, &items)) return code;
    std::string name;
    for (kobd_item item{}; kobd_reply_next(client, &item) != 0;)
        if (item.tag == KOBD_TAG_OBJECT_NAME && item.text != nullptr)
            name = item.text;
        else if (item.tag == KOBD_TAG_VALUE && item.text != nullptr)
            (*values)[name] = item.text;
    return kSuccess;
}

// Where a request or its reply does not fit one message, each half is asked for by itself.
int GetInParts(kobd_client* client, const char* const* names, size_t count, Values* values)
{
    if (count <= kNamesAtOnce)
    {
        const int code = GetTogether(client, names, count, values);
        if (code != kBufferLimit || count <= 1) return code;
    }
    const int code = GetInParts(client, names, count / 2, values);
    return code != kSuccess ? code : GetInParts(client, names + count / 2, count - count / 2, values);
}
}  // namespace

int kobd_get_many(kobd_client* client, const char* const* names, size_t count, kobd_pair_function each, void* context)
{
    Values values;
    Begin(client);
    if (count == 0) return Ended(client, kSuccess);
    if (const int code = GetInParts(client, names, count, &values)) return code;
    for (size_t i = 0; i < count; ++i)
    {
        const auto value = values.find(std::string_view(names[i]));
        each(context, names[i], value != values.end() ? value->second.c_str() : nullptr);
    }
    return kSuccess;
}

int kobd_set(kobd_client* client, const char* const* names, const char* const* values, size_t count)
{
    kobd_items items;
    for (size_t i = 0; i < count; ++i)
    {
        if (const int code = AddText(client, &items, KOBD_TAG_OBJECT_NAME, names[i])) return code;
        if (const int code = AddText(client, &items, KOBD_TAG_VALUE, values[i])) return code;
    }
    return kobd_call(client, KOBD_SET, &items);
}

int kobd_send_event(kobd_client* client, uint32_t module, uint16_t id, const void* payload, size_t length)
{
    Begin(client);
    client->waited_ms = client->timeout_ms.value_or(kDefaultTimeoutMs);
    const int code = Fill(&client->request, module, kClassEvent, id, payload, length);
    if (code != kSuccess) return Ended(client, code);
    return Ended(client, BusClientSend(&client->bus, client->request.Header(), client->waited_ms));
}

int kobd_module_look(uint32_t module, kobd_module* look)
{
    BusModule seen;
    const int error = BusModuleLook(module, &seen);
    *look = {seen.claimed ? 1 : 0, seen.queue ? 1 : 0, seen.messages, seen.capacity, seen.owner, seen.process};
    return error;
}
