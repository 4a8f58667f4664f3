// Requests to the daemon and their decoded replies, over the client library.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/arguments/command_line.h"
#include "client/library/kobd_client.h"

namespace kobd::client
{
// One item of a request or of a reply. A request sends the number where there is one, else the text. An item of a
// reply has a number when it is four bytes long, even if it also is a text.
struct Item
{
    Item(uint16_t item_tag, std::string_view item_text) : tag(item_tag), text(item_text) {}
    Item(uint16_t item_tag, int32_t item_number) : tag(item_tag), number(item_number) {}

    uint16_t tag;
    std::string text = {};
    std::optional<int32_t> number = {};
};

using Items = std::vector<Item>;

// The assignments of object values as the items of a set request.
Items SetItems(const Assignments& pairs);

// The bytes of the items one after the other; nothing when a text is too long for an item.
std::optional<std::string> ItemBytes(const Items& items);

// Whether the items fit one request.
bool FitsOneRequest(const Items& items);

// "a message of 8192 bytes cannot hold WHAT".
std::string TooLarge(const std::string& what);

// The items that `bytes` hold; nothing when one runs past their end or is neither text nor number.
std::optional<Items> ReadItems(std::span<const char> bytes);

struct Response
{
    int code = 0;            // result of the daemon, or of the library when `from_bus`
    bool from_bus = false;   // no reply arrived
    bool too_large = false;  // the request does not fit one message; nothing was sent
    int timeout_ms = 0;      // how long the reply was waited for
    Items items = {};        // what follows the result

    // No reply came in time: what was asked for may be done, or be done later.
    bool MayBeDone() const { return from_bus && code == KOBD_TIMEOUT; }
};

// The address of a module: "0x5A510003".
std::string ModuleText(uint32_t module);

// How long to wait for the answer to a request with these items, in milliseconds: what --timeout says, else 5000, or
// 75000 where they name a cellular table, for which the daemon runs commands for up to 60 seconds.
int TimeoutFor(const Options& options, const Items& items);

// Sends one request and waits for its reply.
Response Call(const Options& options, kobd_request id, const Items& items);

// The same for what only the imitated router understands: a router gives no answer in time.
Response CallHost(const Options& options, kobd_host_control id, const Items& items);

// The texts that the imitated router answers this question with; nothing when nobody answers, as on a router.
std::optional<std::vector<std::string>> AskHost(kobd_host_control question, const Items& items = {});

// Asks for many things; `parts` has the items of each. The response has the items of all replies. Where a request or
// its reply does not fit one message, each half is asked for by itself: result 11 means that a single thing is too
// large. Stops at the first other failure.
Response CallInParts(const Options& options, kobd_request id, std::span<const Items> parts);

using Values = std::map<std::string, std::string>;  // of objects, by name

// Reads the objects, in as many requests as needed. `values` lacks those that are unknown or could not be read,
// because the daemon leaves them out.
Response ReadValues(const Options& options, const Words& names, Values* values);

// Why no reply arrived.
std::string WhyNoAnswer(const Response& response);

// The failure of a request, `what` before its reason; none when the result is 0.
Failure FailureOf(const Response& response, const std::string& what);

// The same for a request that changes something.
Failure FailureOfChange(const Response& response, const std::string& what);
}  // namespace kobd::client
