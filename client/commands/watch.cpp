// kobctl watch: joins as the modules that the daemon sends to, those that are free, and prints what
// arrives.
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "client/commands/commands.h"
#include "client/commands/watch_filter.h"
#include "client/dictionary/events.h"
#include "client/library/kobd_client.h"
#include "client/output/output.h"

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
    if (const EventEntry* event = FindEvent(id)) return event->name;
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

std::string DescribeText(kobd_bytes payload, bool json)
{
    std::string text(static_cast<const char*>(payload.next), payload.left);
    text.resize(strnlen(text.c_str(), text.size()));
    if (text.empty()) return "";
    return json ? ",\"text\":" + JsonString(text) : " text=" + Escaped(text);
}

// The items of a message in words, or as the members of a JSON object.
std::string Describe(uint16_t id, kobd_bytes payload, bool json)
{
    static const char* const kWords[] = {"result", "object", "value", "table", "index", "column", "parent"};
    std::string out;
    if (FindEvent(id) != nullptr) return DescribeText(payload, json);
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&payload, &item)) == 1)
    {
        const std::string word = item.tag < std::size(kWords) ? kWords[item.tag] : "tag" + std::to_string(item.tag);
        const bool number = item.tag == KOBD_TAG_RESULT || item.tag == KOBD_TAG_ROW_INDEX;
        const std::string text = number ? std::to_string(item.length == sizeof item.number ? item.number : -1)
                                        : std::string(item.text != nullptr ? item.text : "?");
        if (json)
            out += "," + JsonString(word) + ":" + (number ? text : JsonString(text));
        else
            out += " " + word + "=" + Escaped(text);
    }
    return out + (more < 0 && !json ? " (cut)" : "");
}

void Print(const Options& options, uint32_t module, uint16_t id, kobd_bytes payload)
{
    char stamp[32];
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    strftime(stamp, sizeof stamp, "%H:%M:%S", &local);
    const std::string items = Describe(id, payload, options.json);
    const char* meaning = Meaning(module, id);
    if (options.json)
        printf("{\"time\":\"%s\",\"module\":\"%s\",\"id\":%d,\"event\":\"%s\"%s}\n", stamp, ModuleText(module).c_str(),
               id, meaning, items.c_str());
    else
        printf("%s %s %s (id %d)%s\n", stamp, ModuleText(module).c_str(), meaning, id, items.c_str());
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

// Prints what has arrived and is asked for, a message a module, `left` at most. How many; -1 when a
// queue was removed.
int PrintArrived(const Options& options, const Words& patterns, const Modules& modules, int left)
{
    int printed = 0;
    for (size_t i = 0; i < modules.size(); ++i)
    {
        if (modules[i] == nullptr || printed == left) continue;
        uint16_t id = 0;
        const int code = kobd_watch_next(modules[i], 0, &id);
        if (code == KOBD_TIMEOUT) continue;
        if (code != KOBD_SUCCESS)
        {
            Fail(options, code, "the queue of module " + ModuleText(kModules[i]) + " was removed");
            return -1;
        }
        if (!IsAskedFor(patterns, id, kobd_watch_payload(modules[i]))) continue;
        Print(options, kModules[i], id, kobd_watch_payload(modules[i]));
        ++printed;
    }
    return printed;
}
}  // namespace

int CommandWatch(const Options& options, const Words& patterns)
{
    if (const std::string wrong = WrongPattern(patterns); !wrong.empty()) return Fail(options, KOBD_NOT_FOUND, wrong);
    signal(SIGINT, [](int) { stop = 1; });
    signal(SIGTERM, [](int) { stop = 1; });
    Modules modules{};
    if (Join(&modules) == 0) return Fail(options, KOBD_INITIALIZE_FAILED, "there is no module left to watch");
    int printed = 0;
    for (int seen = 0; printed >= 0 && stop == 0 && !OutputClosed(); seen += printed)
    {
        if (options.count != 0 && seen >= options.count) break;
        printed = PrintArrived(options, patterns, modules, options.count == 0 ? INT_MAX : options.count - seen);
        const timespec pause = {0, kLookNs};
        if (printed == 0) nanosleep(&pause, nullptr);
    }
    for (kobd_watch* module : modules) kobd_watch_close(module);
    return printed < 0 ? 1 : 0;
}
}  // namespace kobd::client
