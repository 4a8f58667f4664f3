// Requests to the daemon.
#include "client/requests/request.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "daemon/base/messages.h"

namespace kobd::client
{
namespace
{
constexpr size_t kPartsAtOnce = 100;  // a reply to more would not fit one message

constexpr int kTimeoutMs = 5000;
constexpr int kCellularTimeoutMs = 75000;
constexpr std::array<std::string_view, 4> kCellularTables = {"CellularInterfaceTable", "CellularUSIMTable",
                                                             "CellularStatsTable", "cellularaccesspointTable"};

struct FreeItems
{
    void operator()(kobd_items* items) const { kobd_items_free(items); }
};
using BuiltItems = std::unique_ptr<kobd_items, FreeItems>;

// NULL without memory, or when a text is too long for an item.
BuiltItems Build(const Items& items)
{
    BuiltItems built(kobd_items_new());
    for (const Item& item : items)
    {
        if (built == nullptr) break;
        const int code = item.number ? kobd_items_add_number(built.get(), item.tag, *item.number)
                                     : kobd_items_add_text(built.get(), item.tag, item.text.c_str());
        if (code != KOBD_SUCCESS) built.reset();
    }
    return built;
}

Item Copy(const kobd_item& item)
{
    Item copy(item.tag, item.text != nullptr ? item.text : "");
    if (item.length == sizeof item.number) copy.number = item.number;
    return copy;
}

// Sends the items with `call`, which waits for the reply.
template <class CallOne>
Response CallWith(const Options& options, const Items& items, CallOne call)
{
    const BuiltItems built = Build(items);
    if (built == nullptr) return {.code = KOBD_BUFFER_LIMIT, .too_large = true};
    kobd_client* client = nullptr;
    if (const int code = kobd_client_open(&client)) return {.code = code, .from_bus = true};
    const int timeout_ms = TimeoutFor(options, items);
    kobd_client_set_timeout(client, timeout_ms);
    Response response = {.code = call(client, built.get()), .timeout_ms = timeout_ms};
    response.too_large = kobd_answered(client) == 0 && response.code == KOBD_BUFFER_LIMIT;
    response.from_bus = kobd_answered(client) == 0 && !response.too_large;
    for (kobd_item item{}; kobd_reply_next(client, &item) == 1;) response.items.push_back(Copy(item));
    kobd_client_close(client);
    return response;
}
}  // namespace

Items SetItems(const Assignments& pairs)
{
    Items items;
    for (const auto& [name, value] : pairs)
    {
        items.emplace_back(KOBD_TAG_OBJECT_NAME, name);
        items.emplace_back(KOBD_TAG_VALUE, value);
    }
    return items;
}

std::optional<std::string> ItemBytes(const Items& items)
{
    const BuiltItems built = Build(items);
    if (built == nullptr) return std::nullopt;
    size_t size = 0;
    const void* bytes = kobd_items_bytes(built.get(), &size);
    return std::string(static_cast<const char*>(bytes), size);
}

std::optional<Items> ReadItems(std::span<const char> bytes)
{
    Items items;
    kobd_bytes left = {bytes.data(), bytes.size()};
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&left, &item)) == 1)
    {
        items.push_back(Copy(item));
        if (item.text == nullptr && !items.back().number) return std::nullopt;
    }
    if (more != 0) return std::nullopt;
    return items;
}

bool FitsOneRequest(const Items& items)
{
    const auto bytes = ItemBytes(items);
    return bytes && bytes->size() <= KOBD_PAYLOAD_MAX;
}

std::string TooLarge(const std::string& what)
{
    return "a message of " + std::to_string(kMessageMax) + " bytes cannot hold " + what;
}

std::string ModuleText(uint32_t module)
{
    char text[16];
    snprintf(text, sizeof text, "0x%08X", module);
    return text;
}

int TimeoutFor(const Options& options, const Items& items)
{
    if (options.timeout_ms) return *options.timeout_ms;
    const auto is_slow = [](const Item& item) {
        return item.tag == KOBD_TAG_TABLE_NAME &&
               std::ranges::find(kCellularTables, item.text) != kCellularTables.end();
    };
    return std::ranges::any_of(items, is_slow) ? kCellularTimeoutMs : kTimeoutMs;
}

Response Call(const Options& options, kobd_request id, const Items& items)
{
    return CallWith(options, items,
                    [id](kobd_client* client, const kobd_items* built) { return kobd_call(client, id, built); });
}

Response CallHost(const Options& options, kobd_host_control id, const Items& items)
{
    return CallWith(options, items,
                    [id](kobd_client* client, const kobd_items* built) { return kobd_host_call(client, id, built); });
}

std::optional<std::vector<std::string>> AskHost(kobd_host_control question, const Items& items)
{
    static bool unanswered = false;  // a router's daemon: asking once more would cost the same wait
    kobd_module daemon{};
    if (unanswered || kobd_module_look(KOBD_MODULE_DAEMON, &daemon) != 0 || daemon.claimed == 0) return {};
    Options options;
    options.timeout_ms = 2000;
    const Response response = CallHost(options, question, items);
    unanswered = response.from_bus;
    if (response.code != 0) return {};
    std::vector<std::string> texts;
    for (const Item& item : response.items) texts.push_back(item.text);
    return texts;
}

Response CallInParts(const Options& options, kobd_request id, std::span<const Items> parts)
{
    if (parts.size() <= kPartsAtOnce)
    {
        Items items;
        for (const Items& part : parts) items.insert(items.end(), part.begin(), part.end());
        Response response = Call(options, id, items);
        if (response.code != KOBD_BUFFER_LIMIT || parts.size() <= 1) return response;
    }
    const size_t middle = parts.size() / 2;
    Response first = CallInParts(options, id, parts.first(middle));
    if (first.code != 0) return first;
    const Response second = CallInParts(options, id, parts.subspan(middle));
    if (second.code != 0) return second;
    first.items.insert(first.items.end(), second.items.begin(), second.items.end());
    return first;
}

Response ReadValues(const Options& options, const Words& names, Values* values)
{
    std::vector<Items> parts;
    for (const std::string& name : names) parts.push_back({Item(KOBD_TAG_OBJECT_NAME, name)});
    Response response = CallInParts(options, KOBD_GET, parts);
    const Items& answers = response.items;
    for (size_t i = 0; i + 1 < answers.size(); i += 2) (*values)[answers[i].text] = answers[i + 1].text;
    return response;
}

std::string WhyNoAnswer(const Response& response)
{
    kobd_module daemon = {};
    switch (response.code)
    {
        case KOBD_TIMEOUT: return "no answer within " + std::to_string(response.timeout_ms) + " ms";
        case KOBD_INITIALIZE_FAILED: return "the system has no message queue for the answer, see kobctl doctor";
        case KOBD_NOT_RUNNING:
            return kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == EACCES
                       ? "kobd runs as another user: be that user or root"
                       : "kobd is not running on this bus";
        default: return "kobd was not reached";
    }
}

Failure FailureOf(const Response& response, const std::string& what)
{
    if (response.code == 0) return {};
    return FailureWithCode(response.code, what + (response.from_bus ? ": " + WhyNoAnswer(response) : ""));
}

Failure FailureOfChange(const Response& response, const std::string& what)
{
    if (!response.MayBeDone()) return FailureOf(response, what);
    return FailureWithCode(response.code, what + ": " + WhyNoAnswer(response) + ", see whether it was done");
}
}  // namespace kobd::client
