// Requests to the daemon and their decoded replies, over the client library.
#pragma once

#include <cstdint>
#include <functional>
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
    int code = 0;             // result of the daemon, or of the library when `from_bus`
    bool from_bus = false;    // no reply arrived
    bool too_large = false;   // the request does not fit one message; nothing was sent
    std::string reason = {};  // why it failed, as kobd_explain tells
    std::string why = {};     // the same in full, with the result code in words
    std::string object = {};  // that was refused, where it is known which one it was
    Items items = {};         // what follows the result

    // No reply came in time: what was asked for may be done, or be done later.
    bool MayBeDone() const { return from_bus && code == KOBD_TIMEOUT; }
};

// The address of a module: "0x5A510003".
std::string ModuleText(uint32_t module);

// Opens a client that waits as long as the options say, and lets `use` call the library with it. The response has the
// code that `use` returns, and why. `tables` are those that the request names.
Response WithClient(const Options& options, const std::function<int(kobd_client*)>& use, const Words& tables = {});

// Sends one request and waits for its reply.
Response Call(const Options& options, kobd_request id, const Items& items);

// The same for what only the imitated router understands: a router gives no answer in time.
Response CallHost(const Options& options, kobd_host_control id, const Items& items);

// Whether the daemon is one of another user, which nobody may wait for.
bool IsAnotherUsers();

// Why the daemon cannot be asked, for when none runs or another user's does, which is told at once.
std::string WhyUnreachable();

// Whether requests wait for the daemon, which has not looked at the last one then.
bool IsBusy();

// The path of the database that the daemon has open. The empty text where the system shows none: on a router, and of a
// daemon of another user.
std::string DatabaseOfDaemon();

// The texts that the imitated router answers this question with; nothing when there is no answer in time, as on a
// router.
std::optional<std::vector<std::string>> AskHost(kobd_host_control question, const Items& items = {},
                                                int timeout_ms = 2000);

using Values = std::map<std::string, std::string>;  // of objects, by name

// Reads the objects, in as many requests as needed. `values` lacks those that are unknown or could not be read,
// because the daemon leaves them out.
Response ReadValues(const Options& options, const Words& names, Values* values);

// The failure of a request, `what` before its reason; none when the result is 0.
Failure FailureOf(const Response& response, const std::string& what);

// The same for a request that changes something.
Failure FailureOfChange(const Response& response, const std::string& what);
}  // namespace kobd::client
