// Requests to the daemon.
#include "client/requests/request.h"

#include <memory>

namespace kobd::client
{
namespace
{
constexpr size_t kPartsAtOnce = 100;  // more would only be asked in vain

struct FreeItems
{
    void operator()(kobd_items* items) const { kobd_items_free(items); }
};
using BuiltItems = std::unique_ptr<kobd_items, FreeItems>;

// Nothing without memory, or when a text is too long for an item.
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
}  // namespace

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

Response Call(uint16_t id, const Items& items, int timeout_ms)
{
    const BuiltItems built = Build(items);
    if (built == nullptr) return {.code = KOBD_BUFFER_LIMIT, .too_large = true};
    kobd_client* client = nullptr;
    if (const int code = kobd_client_open(&client)) return {.code = code, .from_bus = true};
    kobd_client_set_timeout(client, timeout_ms);
    Response response = {.code = kobd_call(client, static_cast<kobd_request>(id), built.get())};
    response.too_large = kobd_answered(client) == 0 && response.code == KOBD_BUFFER_LIMIT;
    response.from_bus = kobd_answered(client) == 0 && !response.too_large;
    for (kobd_item item{}; kobd_reply_next(client, &item) == 1;) response.items.push_back(Copy(item));
    kobd_client_close(client);
    return response;
}

Response CallInParts(uint16_t id, std::span<const Items> parts, int timeout_ms, Items* answers)
{
    Response response = {.code = KOBD_BUFFER_LIMIT};
    if (parts.size() <= kPartsAtOnce)
    {
        Items items;
        for (const Items& part : parts) items.insert(items.end(), part.begin(), part.end());
        response = Call(id, items, timeout_ms);
    }
    if (response.code == KOBD_BUFFER_LIMIT && parts.size() > 1)
    {
        const size_t middle = parts.size() / 2;
        response = CallInParts(id, parts.first(middle), timeout_ms, answers);
        return response.code != 0 ? response : CallInParts(id, parts.subspan(middle), timeout_ms, answers);
    }
    answers->insert(answers->end(), response.items.begin(), response.items.end());
    return response;
}
}  // namespace kobd::client
