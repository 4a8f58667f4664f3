// Requests to the daemon.
#include "client/requests/request.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include "client/dictionary/dictionary.h"
#include "client/output/outcome.h"
#include "daemon/base/messages.h"

namespace kobd::client
{
namespace
{
constexpr char kNoQueue[] = "the system has no message queue for the answer, see kobctl doctor";

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

// Tells somebody at a terminal that a request takes long.
class Patience
{
public:
    explicit Patience(const Words& tables) : cellular_(std::ranges::any_of(tables, IsCellularTable))
    {
        if (isatty(STDERR_FILENO) != 0) teller_ = std::thread([this] { Tell(); });
    }
    ~Patience()
    {
        if (!teller_.joinable()) return;
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
        }
        changed_.notify_one();
        teller_.join();
    }
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;

private:
    void Tell()
    {
        constexpr std::chrono::seconds kSilence(2);
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, kSilence, [this] { return ended_; }))
            SayError(std::string("still waiting for the router") +
                     (cellular_ ? "; it runs a command for each value of a cellular table" : ""));
    }

    bool cellular_;
    std::mutex mutex_ = {};
    std::condition_variable changed_ = {};
    bool ended_ = false;
    std::thread teller_ = {};
};

Item Copy(const kobd_item& item)
{
    Item copy(item.tag, item.text != nullptr ? item.text : "");
    if (item.length == sizeof item.number) copy.number = item.number;
    return copy;
}

Words TablesOf(const Items& items)
{
    Words tables;
    for (const Item& item : items)
        if (item.tag == KOBD_TAG_TABLE_NAME) tables.push_back(item.text);
    return tables;
}

// Sends the items with `call`, which waits for the reply.
template <class CallOne>
Response CallWith(const Options& options, const Items& items, CallOne call)
{
    const BuiltItems built = Build(items);
    if (built == nullptr) return {.code = KOBD_BUFFER_LIMIT, .too_large = true};
    Items reply;
    Response response = WithClient(
        options,
        [&](kobd_client* client)
        {
            const int code = call(client, built.get());
            for (kobd_item item{}; kobd_reply_next(client, &item) == 1;) reply.push_back(Copy(item));
            return code;
        },
        TablesOf(items));
    response.items = std::move(reply);
    return response;
}
}  // namespace

Response WithClient(const Options& options, const std::function<int(kobd_client*)>& use, const Words& tables)
{
    kobd_client* client = nullptr;
    if (const int code = kobd_client_open(&client))
        return {.code = code, .from_bus = true, .reason = kNoQueue, .why = FailureWithCode(code, kNoQueue).what};
    if (options.timeout_ms) kobd_client_set_timeout(client, *options.timeout_ms);
    Response response;
    {
        const Patience patience(tables);
        response.code = use(client);
    }
    const bool unanswered = response.code != 0 && kobd_answered(client) == 0;
    response.too_large = unanswered && response.code == KOBD_BUFFER_LIMIT;
    response.from_bus = unanswered && !response.too_large;
    if (const kobd_explanation* why = kobd_explain(client))
    {
        response.reason = why->reason;
        response.why = why->text;
        response.object = why->object != nullptr ? why->object : "";
    }
    kobd_client_close(client);
    return response;
}

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

bool IsAnotherUsers()
{
    kobd_module daemon{};
    return kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == EACCES;
}

std::string WhyUnreachable() { return Call({}, KOBD_GET, {}).reason; }

bool IsBusy()
{
    kobd_module daemon{};
    return kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == 0 && daemon.claimed != 0 && daemon.messages > 0;
}

std::string DatabaseOfDaemon()
{
    constexpr std::string_view kFile = "/kobd.db";
    kobd_module daemon{};
    if (kobd_module_look(KOBD_MODULE_DAEMON, &daemon) != 0 || daemon.process == 0) return "";
    std::error_code error;
    const std::filesystem::path files = "/proc/" + std::to_string(daemon.process) + "/fd";
    for (std::filesystem::directory_iterator file(files, error), end; !error && file != end; file.increment(error))
    {
        std::string path = std::filesystem::read_symlink(file->path(), error).string();
        error.clear();  // it was closed meanwhile
        if (const size_t gone = path.rfind(" (deleted)"); gone != path.npos) path.resize(gone);  // under the daemon
        if (path.ends_with(kFile)) return path;
    }
    return "";
}

std::optional<std::vector<std::string>> AskHost(kobd_host_control question, const Items& items, int timeout_ms)
{
    constexpr int kPatientMs = 1000;  // a machine that is loaded lets the imitated router answer late, too
    static bool unanswered = false;   // a router's daemon: asking once more would cost the same wait
    kobd_module daemon{};
    if (unanswered || kobd_module_look(KOBD_MODULE_DAEMON, &daemon) != 0 || daemon.claimed == 0) return {};
    Options options;
    options.timeout_ms = timeout_ms;
    const Response response = CallHost(options, question, items);
    unanswered = response.from_bus && timeout_ms >= kPatientMs && !IsBusy() && DatabaseOfDaemon().empty();
    if (response.code != 0) return {};
    std::vector<std::string> texts;
    for (const Item& item : response.items) texts.push_back(item.text);
    return texts;
}

Response ReadValues(const Options& options, const Words& names, Values* values)
{
    std::vector<const char*> asked;
    for (const std::string& name : names) asked.push_back(name.c_str());
    const auto keep = [](void* into, const char* name, const char* value)
    {
        if (value != nullptr) (*static_cast<Values*>(into))[name] = value;
    };
    return WithClient(
        options, [&](kobd_client* client) { return kobd_get_many(client, asked.data(), asked.size(), keep, values); });
}

Failure FailureOf(const Response& response, const std::string& what)
{
    if (response.code == 0) return {};
    if (response.from_bus) return {response.code, what + ": " + response.why};
    return FailureWithCode(response.code, what);
}

Failure FailureOfChange(const Response& response, const std::string& what)
{
    if (!response.MayBeDone()) return FailureOf(response, what);
    return FailureWithCode(response.code, what + ": " + response.reason + ", see whether it was done");
}
}  // namespace kobd::client
