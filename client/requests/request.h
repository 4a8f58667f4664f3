// Requests to the daemon and their decoded replies, over the client library.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/library/kobd_client.h"

namespace kobd::client
{
enum RequestId : uint16_t
{
    kRequestSet = KOBD_SET,
    kRequestGet = KOBD_GET,
    kRequestSetSilent = KOBD_SET_SILENT,
    kRequestUpdate = KOBD_UPDATE,
    kRequestTableMaxRow = KOBD_TABLE_MAX_ROW,
    kRequestTableAdd = KOBD_TABLE_ADD,
    kRequestTableDel = KOBD_TABLE_DEL,
    kRequestTableGet = KOBD_TABLE_GET,
    kRequestTableSet = KOBD_TABLE_SET,
    kRequestTableSetSilent = KOBD_TABLE_SET_SILENT,
    kRequestTableDump = KOBD_TABLE_DUMP,
    kRequestShow = KOBD_SHOW,
    kRequestSubTableAdd = KOBD_SUB_TABLE_ADD,
};

// One item of a request or of what came back. A request writes the number where there is one. An
// item that came back has a number whenever it is four bytes long, whatever its text.
struct Item
{
    Item(uint16_t item_tag, std::string_view item_text) : tag(item_tag), text(item_text) {}
    Item(uint16_t item_tag, int32_t item_number) : tag(item_tag), number(item_number) {}

    uint16_t tag;
    std::string text = {};
    std::optional<int32_t> number = {};
};

using Items = std::vector<Item>;

// The bytes of the items one after the other; nothing when a text is too long for an item.
std::optional<std::string> ItemBytes(const Items& items);

// The items that `bytes` hold; nothing when one runs past their end or is neither text nor number.
std::optional<Items> ReadItems(std::span<const char> bytes);

struct Response
{
    int code = 0;            // result of the daemon, or of the library when `from_bus`
    bool from_bus = false;   // no reply arrived
    bool too_large = false;  // the request does not fit one message; nothing was sent
    Items items = {};        // what follows the result
};

// Sends one request and waits for its reply.
Response Call(uint16_t id, const Items& items, int timeout_ms);

// Sends one request for many things, `parts` holding the items of each, and collects what is
// answered in `answers`. Where a request or its reply would not fit one message, asks in halves, so
// that result 11 is left for a single thing that is too large. Stops at the first other failure.
Response CallInParts(uint16_t id, std::span<const Items> parts, int timeout_ms, Items* answers);
}  // namespace kobd::client
