// What the sources of the library share: a client with its last call, lists of items, messages.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "client/library/kobd_client.h"
#include "client/log/log_window.h"
#include "daemon/base/messages.h"
#include "platform/bus_client.h"

namespace kobd::client
{
inline constexpr int kDefaultTimeoutMs = 5000;
inline constexpr int kCellularTimeoutMs = 75000;  // the daemon runs commands for up to 60 seconds

struct Message
{
    alignas(MessageHeader) std::array<char, kMessageMax> bytes{};

    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes.data()); }
    const MessageHeader* Header() const { return reinterpret_cast<const MessageHeader*>(bytes.data()); }
    char* Room() { return bytes.data() + sizeof(MessageHeader); }
    kobd_bytes Payload() const { return {bytes.data() + sizeof(MessageHeader), Header()->length}; }
};

struct NameAndValue
{
    std::string name;
    std::string value;
};

struct RowWithValues
{
    std::string table;
    int32_t index;
    std::vector<NameAndValue> values = {};

    std::string Text() const { return table + " " + std::to_string(index); }
};

// An explanation that holds its texts. Texts that do not apply are not there.
struct Explained
{
    int code = 0;
    std::optional<std::string> object = {};
    std::optional<std::string> table = {};
    int32_t index = -1;
    std::optional<std::string> column = {};
    std::optional<std::string> value = {};
    std::string reason = {};
    std::optional<std::string> right = {};
    std::string text = {};  // without the code in words, which Face adds
    size_t changed = 0;
    kobd_explanation face = {};

    // The explanation as C has it, valid as long as this object is unchanged.
    const kobd_explanation* Face();
};

// The rows of a dump file or of a reply; nothing when the items are in another order.
std::optional<std::vector<RowWithValues>> ReadRows(kobd_bytes items);

// Keeps the code of the function that ends, for kobd_explain, and returns it. With a reason, it is the library itself
// that found what is wrong.
int Ended(kobd_client* client, int code);
int Ended(kobd_client* client, Explained why);
}  // namespace kobd::client

struct kobd_items
{
    char* bytes = nullptr;  // from malloc
    size_t used = 0;
    size_t size = 0;

    kobd_items() = default;
    kobd_items(const kobd_items&) = delete;
    kobd_items& operator=(const kobd_items&) = delete;
    ~kobd_items();

    // Makes room for `more` bytes behind the used ones; false without memory.
    bool Grow(size_t more);
};

struct kobd_changes
{
    std::vector<kobd::client::RowWithValues> rows = {};
};

namespace kobd::client
{
// Whether requests wait for the daemon, which has not looked at the last one then.
inline bool DaemonIsBusy()
{
    BusModule daemon;
    return BusModuleLook(kModuleKobd, &daemon) == 0 && daemon.claimed && daemon.messages > 0;
}
}  // namespace kobd::client

struct kobd_client
{
    BusClient bus;
    std::optional<int> timeout_ms = {};  // that the program has set
    bool answered = false;
    kobd::client::Message request;
    kobd::client::Message reply;
    kobd_bytes left = {};         // of the reply
    std::string dump = {};        // content of the last dump file
    bool host_is_silent = false;  // no imitated router answers: nobody asks again

    // Of the last call, for kobd_explain:
    int code = 0;
    int waited_ms = 0;  // how long a reply was waited for
    kobd::client::LogWindow log = {};
    std::vector<kobd::client::RowWithValues> changes = {};  // that it sent
    std::optional<kobd::client::Explained> explained = {};  // where it is known already
};
