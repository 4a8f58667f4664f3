// kobctl watch: joins the bus as the modules to which the daemon sends, where no other program has, and prints what
// arrives.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/requests/request.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 10000000;  // between looks at queues that were empty

volatile sig_atomic_t stop = 0;

struct Announcement
{
    uint32_t module;  // to which it goes
    uint16_t id;
    const char* meaning;
};
constexpr Announcement kAnnouncements[] = {
    {kModuleNotify, kEventObjectChanged, "object changed"},
    {kModuleNotify, kEventTableChanged, "table changed"},
    {kModuleNotify, kEventSetFinished, "set finished"},
    {kModuleNotify, kEventRowAdded, "row added"},
    {kModuleNotify, kEventRowDeleted, "row deleted"},
    {kModuleNotify, kEventSubRowAdded, "row added under a parent"},
    {kModuleServices, kEventConnectionChanged, "connection changed"},
};

const NetworkEvent* FindEvent(uint16_t id)
{
    const auto found = std::ranges::find(kNetworkEvents, id, &NetworkEvent::id);
    return found == std::end(kNetworkEvents) ? nullptr : found;
}

const char* Meaning(uint32_t module, uint16_t id)
{
    if (const NetworkEvent* event = FindEvent(id)) return event->name;
    for (const Announcement& one : kAnnouncements)
        if (one.module == module && one.id == id) return one.meaning;
    return "event";
}

// Whether one of the patterns matches the name.
bool MatchesOne(const Words& patterns, const std::string& name)
{
    return std::ranges::any_of(patterns, [&](const std::string& pattern) { return MatchesName(pattern, name); });
}

// Fails for a pattern that matches no object, table or event and so would never show anything.
Failure CheckPatterns(const Words& patterns)
{
    Words names = AllNames(kObjectRows);
    for (const Words& more : {AllNames(kTableRows), AllNames(kNetworkEvents)})
        names.insert(names.end(), more.begin(), more.end());
    for (const std::string& pattern : patterns)
        if (pattern.empty() ||
            std::ranges::none_of(names, [&](const std::string& name) { return MatchesName(pattern, name); }))
            return {kNotFound, "no object, table or event matches '" + pattern + "'" + DidYouMean(pattern, names)};
    return {};
}

// Whether one of the patterns matches an object, table or event that the message names; always without patterns.
bool IsAskedFor(const Words& patterns, uint16_t id, kobd_bytes payload)
{
    if (patterns.empty()) return true;
    if (const NetworkEvent* event = FindEvent(id)) return MatchesOne(patterns, event->name);
    kobd_item item{};
    while (kobd_bytes_next(&payload, &item) == 1)
        if ((item.tag == KOBD_TAG_OBJECT_NAME || item.tag == KOBD_TAG_TABLE_NAME) && item.text != nullptr &&
            MatchesOne(patterns, item.text))
            return true;
    return false;
}

// What a message says, by name. It may have several items of one kind.
using Parts = Json::object_t;

// Reads the items of a message. False when the message was cut.
bool ReadParts(kobd_bytes payload, Parts* parts)
{
    static const char* const kWords[] = {"result", "object", "value", "table", "index", "column", "parent"};
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&payload, &item)) == 1)
    {
        const std::string word = item.tag < std::size(kWords) ? kWords[item.tag] : "tag" + std::to_string(item.tag);
        if (item.tag == KOBD_TAG_RESULT || item.tag == KOBD_TAG_ROW_INDEX)
            parts->emplace_back(word, item.length == sizeof item.number ? item.number : -1);
        else
            parts->emplace_back(word, item.text != nullptr ? item.text : "?");
    }
    return more == 0;
}

// Reads the text of a network event, which has no items. There may be none.
void ReadText(kobd_bytes payload, Parts* parts)
{
    std::string text(static_cast<const char*>(payload.next), payload.left);
    text.resize(strnlen(text.c_str(), text.size()));
    if (!text.empty()) parts->emplace_back("text", text);
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
    const std::string now = Now();
    std::string text = now + " " + ModuleText(module) + " " + Meaning(module, id) + " (id " + std::to_string(id) + ")";
    Parts parts = {{"time", now}, {"module", ModuleText(module)}, {"id", id}, {"event", Meaning(module, id)}};
    const size_t heading = parts.size();
    bool whole = true;
    if (FindEvent(id) != nullptr)
        ReadText(payload, &parts);
    else
        whole = ReadParts(payload, &parts);
    for (size_t i = heading; i < parts.size(); ++i)
    {
        const auto& [name, value] = parts.data()[i];
        text += " " + name + "=" + Escaped(value.is_string() ? value.get<std::string>() : value.dump());
    }
    (void)Print(options, {std::move(parts), text + (whole ? "\n" : " (cut)\n")});
    fflush(stdout);
}

std::string WhyNotJoined(uint32_t module)
{
    kobd_module seen = {};
    const bool taken = kobd_module_look(module, &seen) != 0 || seen.claimed != 0;
    return taken ? "another program has it" : "the system has no message queue for it, see kobctl doctor";
}

struct Watched
{
    uint32_t module;
    kobd_watch* watch;
};

// Joins the modules that are free, and says which are not.
std::vector<Watched> Join()
{
    std::vector<Watched> joined;
    for (const uint32_t module : {kModuleNotify, kModuleServices, kModuleForward})
    {
        kobd_watch* watch = nullptr;
        if (kobd_watch_open(&watch, module) == KOBD_SUCCESS)
            joined.push_back({module, watch});
        else
            SayError("not watching module " + ModuleText(module) + ", " + WhyNotJoined(module));
    }
    return joined;
}

bool IsEnough(const Options& options, uint64_t printed)
{
    return options.count != 0 && printed >= static_cast<uint64_t>(options.count);
}

// Prints at most one message of each module, if it has arrived and a pattern asks for it. Adds to `printed`.
Failure PrintArrived(const Options& options, const Words& patterns, const std::vector<Watched>& joined,
                     uint64_t* printed)
{
    for (const auto& [module, watch] : joined)
    {
        uint16_t id = 0;
        const int code = IsEnough(options, *printed) ? KOBD_TIMEOUT : kobd_watch_next(watch, 0, &id);
        if (code == KOBD_TIMEOUT) continue;
        if (code != KOBD_SUCCESS) return {code, "the queue of module " + ModuleText(module) + " was removed"};
        if (!IsAskedFor(patterns, id, kobd_watch_payload(watch))) continue;
        PrintMessage(options, module, id, kobd_watch_payload(watch));
        ++*printed;
    }
    return {};
}
}  // namespace

Outcome CommandWatch(const Options& options, const Words& patterns)
{
    if (Failure failure = CheckPatterns(patterns)) return failure;
    signal(SIGINT, [](int) { stop = 1; });
    signal(SIGTERM, [](int) { stop = 1; });
    const std::vector<Watched> joined = Join();
    if (joined.empty()) return Failure{KOBD_INITIALIZE_FAILED, "no module could be watched"};
    Failure failure;
    for (uint64_t printed = 0; !failure && stop == 0 && !OutputClosed() && !IsEnough(options, printed);)
    {
        const uint64_t before = printed;
        failure = PrintArrived(options, patterns, joined, &printed);
        const timespec pause = {0, kLookNs};
        if (printed == before && !failure) nanosleep(&pause, nullptr);
    }
    for (const Watched& one : joined) kobd_watch_close(one.watch);
    return failure;
}
}  // namespace kobd::client
