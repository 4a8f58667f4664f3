// kobctl watch: joins the bus as those modules that the daemon sends to and nobody else is, and prints what arrives.
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <utility>

#include "client/commands/commands.h"
#include "client/commands/watch_filter.h"
#include "client/dictionary/events.h"
#include "client/library/kobd_client.h"
#include "client/output/terminal.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 10000000;  // between looks at queues that were empty

constexpr std::array<uint32_t, 3> kModules = {KOBD_MODULE_NOTIFY, KOBD_MODULE_SERVICES, KOBD_MODULE_FORWARD};

volatile sig_atomic_t stop = 0;

std::string ModuleText(uint32_t module)
{
    char text[16];
    snprintf(text, sizeof text, "0x%08X", module);
    return text;
}

const char* Meaning(uint32_t module, uint16_t id)
{
    if (const NetworkEvent* event = FindEvent(id)) return event->name;
    if (module == KOBD_MODULE_SERVICES) return id == 799 ? "connection changed" : "event";
    switch (id)
    {
        case 2: return "object changed";
        case 3: return "table changed";
        case 4: return "set finished";
        case 799: return "row added";
        case 800: return "row deleted";
        case 801: return "row added under a parent";
        default: return "event";
    }
}

// Adds a member to the object. A message may have several items of one kind, which all become members.
void AddMember(const std::string& name, Json value, Json* object)
{
    object->get_ref<Json::object_t&>().emplace_back(name, std::move(value));
}

// Adds the items of a message. False when the message was cut.
bool AddItems(kobd_bytes payload, Json* object)
{
    static const char* const kWords[] = {"result", "object", "value", "table", "index", "column", "parent"};
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&payload, &item)) == 1)
    {
        const std::string word = item.tag < std::size(kWords) ? kWords[item.tag] : "tag" + std::to_string(item.tag);
        if (item.tag == KOBD_TAG_RESULT || item.tag == KOBD_TAG_ROW_INDEX)
            AddMember(word, item.length == sizeof item.number ? item.number : -1, object);
        else
            AddMember(word, item.text != nullptr ? item.text : "?", object);
    }
    return more == 0;
}

// Adds the text of an event, which has no items. There may be none.
void AddText(kobd_bytes payload, Json* object)
{
    std::string text(static_cast<const char*>(payload.next), payload.left);
    text.resize(strnlen(text.c_str(), text.size()));
    if (!text.empty()) AddMember("text", text, object);
}

std::string Now()
{
    char stamp[32];
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    strftime(stamp, sizeof stamp, "%H:%M:%S", &local);
    return stamp;
}

void PrintMessage(const Options& options, uint32_t module, uint16_t id, kobd_bytes payload)
{
    Json items = Json::object();
    bool whole = true;
    if (FindEvent(id) != nullptr)
        AddText(payload, &items);
    else
        whole = AddItems(payload, &items);
    Outcome outcome({{"time", Now()}, {"module", ModuleText(module)}, {"id", id}, {"event", Meaning(module, id)}}, "");
    outcome.text = Now() + " " + ModuleText(module) + " " + Meaning(module, id) + " (id " + std::to_string(id) + ")";
    for (const auto& [name, value] : items.items())
    {
        AddMember(name, value, &outcome.data);
        outcome.text += " " + name + "=" + Escaped(value.is_string() ? value.get<std::string>() : value.dump());
    }
    outcome.text += whole ? "\n" : " (cut)\n";
    (void)Print(options, outcome);
    fflush(stdout);
}

std::string WhyNotJoined(uint32_t module)
{
    kobd_module seen = {};
    const bool taken = kobd_module_look(module, &seen) != 0 || seen.claimed != 0;
    return taken ? "another program has it" : "the system has no message queue for it, see kobctl doctor";
}

using Modules = std::array<kobd_watch*, kModules.size()>;  // nullptr: not joined

// Joins the modules that are free and says which are not. How many were joined.
int Join(Modules* modules)
{
    int joined = 0;
    for (size_t i = 0; i < kModules.size(); ++i)
    {
        if (kobd_watch_open(&(*modules)[i], kModules[i]) == KOBD_SUCCESS)
            ++joined;
        else
            SayError("not watching module " + ModuleText(kModules[i]) + ", " + WhyNotJoined(kModules[i]));
    }
    return joined;
}

// Prints what has arrived and is asked for, one message a module and `left` at most. Adds to `printed`.
Failure PrintArrived(const Options& options, const Words& patterns, const Modules& modules, int left, int* printed)
{
    for (size_t i = 0; i < modules.size(); ++i)
    {
        if (modules[i] == nullptr || left == 0) continue;
        uint16_t id = 0;
        const int code = kobd_watch_next(modules[i], 0, &id);
        if (code == KOBD_TIMEOUT) continue;
        if (code != KOBD_SUCCESS) return {code, "the queue of module " + ModuleText(kModules[i]) + " was removed"};
        if (!IsAskedFor(patterns, id, kobd_watch_payload(modules[i]))) continue;
        PrintMessage(options, kModules[i], id, kobd_watch_payload(modules[i]));
        ++*printed;
        --left;
    }
    return {};
}
}  // namespace

Outcome CommandWatch(const Options& options, const Words& patterns)
{
    if (Failure failure = CheckPatterns(patterns)) return failure;
    signal(SIGINT, [](int) { stop = 1; });
    signal(SIGTERM, [](int) { stop = 1; });
    Modules modules{};
    if (Join(&modules) == 0) return Failure{KOBD_INITIALIZE_FAILED, "there is no module left to watch"};
    Failure failure;
    for (int seen = 0; !failure && stop == 0 && !OutputClosed() && (options.count == 0 || seen < options.count);)
    {
        const int before = seen;
        failure = PrintArrived(options, patterns, modules, options.count == 0 ? INT_MAX : options.count - seen, &seen);
        const timespec pause = {0, kLookNs};
        if (seen == before && !failure) nanosleep(&pause, nullptr);
        if (options.count == 0) seen = 0;  // without end, for as long as the router runs
    }
    for (kobd_watch* module : modules) kobd_watch_close(module);
    return failure;
}
}  // namespace kobd::client
