// kobctl watch: joins as the modules that the daemon sends to, those that are free, and prints what
// arrives.
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "client/commands.h"
#include "client/events.h"
#include "client/request.h"
#include "client/watch_filter.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 10000000;  // between looks at queues that were empty

constexpr std::array<uint32_t, 3> kModules = {kModuleNotify, kModuleServices, kModuleForward};

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
    if (module == kModuleServices) return id == 799 ? "connection changed" : "event";
    switch (id)
    {
        case 2: return "object changed";
        case 3: return "table changed";
        case 4: return "set finished";
        case 799: return "row added";
        case 800: return "row deleted";
        case 801: return "row changed";
        default: return "event";
    }
}

// The payload of a network event that was passed on: a text without items.
std::string DescribeText(const MessageHeader* message, bool json)
{
    std::string text(reinterpret_cast<const char*>(message + 1), message->length);
    text.resize(strnlen(text.c_str(), text.size()));
    if (json) return text.empty() ? "" : ",\"text\":" + JsonString(text);
    return text.empty() ? "" : " text=" + Escaped(text);
}

// The items of a message in words, or as the members of a JSON object.
std::string Describe(const MessageHeader* message, bool json)
{
    static const char* const kWords[] = {"result", "object", "value", "table", "index", "column", "parent"};
    std::string out;
    if (FindEvent(message->id) != nullptr) return DescribeText(message, json);
    TlvReader reader({reinterpret_cast<const char*>(message + 1), message->length});
    while (const auto item = reader.Next())
    {
        const std::string word = item->tag < std::size(kWords) ? kWords[item->tag] : "tag" + std::to_string(item->tag);
        const bool number = item->tag == kTagResult || item->tag == kTagRowIndex;
        const std::string text =
            number ? std::to_string(item->Int().value_or(-1)) : std::string(item->Text().value_or("?"));
        if (json)
            out += "," + JsonString(word) + ":" + (number ? text : JsonString(text));
        else
            out += " " + word + "=" + Escaped(text);
    }
    return out + (reader.Broken() && !json ? " (cut)" : "");
}

void Print(const Options& options, uint32_t module, const MessageHeader* message)
{
    char stamp[32];
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    strftime(stamp, sizeof stamp, "%H:%M:%S", &local);
    const std::string items = Describe(message, options.json);
    const char* meaning = Meaning(module, message->id);
    if (options.json)
        printf("{\"time\":\"%s\",\"module\":\"%s\",\"id\":%d,\"event\":\"%s\"%s}\n", stamp, ModuleText(module).c_str(),
               message->id, meaning, items.c_str());
    else
        printf("%s %s %s (id %d)%s\n", stamp, ModuleText(module).c_str(), meaning, message->id, items.c_str());
    fflush(stdout);
}

using Modules = std::array<BusClient, kModules.size()>;

// Joins the modules that are free and says which are not. How many were joined.
int Join(Modules* modules)
{
    int joined = 0;
    for (size_t i = 0; i < kModules.size(); ++i)
    {
        if (BusClientJoin(&(*modules)[i], kModules[i]) == 0)
            ++joined;
        else
            fprintf(stderr, "kobctl: not watching module %s, another program has it\n",
                    ModuleText(kModules[i]).c_str());
    }
    return joined;
}

// Prints what has arrived and is asked for, a message a module, `left` at most. How many; -1 when a
// queue was removed.
int PrintArrived(const Options& options, const Words& patterns, Modules* modules, int left)
{
    alignas(MessageHeader) static char bytes[kMessageMax];
    auto* message = reinterpret_cast<MessageHeader*>(bytes);
    int printed = 0;
    for (BusClient& module : *modules)
    {
        if (module.module == 0 || printed == left) continue;
        const int code = BusClientReceive(&module, message, 0);
        if (code == kReplyTimeout) continue;
        if (code != 0)
        {
            Fail(options, code, "the queue of module " + ModuleText(module.module) + " was removed");
            return -1;
        }
        if (!IsAskedFor(patterns, message)) continue;
        Print(options, module.module, message);
        ++printed;
    }
    return printed;
}
}  // namespace

int CommandWatch(const Options& options, const Words& patterns)
{
    if (const std::string wrong = WrongPattern(patterns); !wrong.empty()) return Fail(options, kNotFound, wrong);
    signal(SIGINT, [](int) { stop = 1; });
    signal(SIGTERM, [](int) { stop = 1; });
    Modules modules;
    if (Join(&modules) == 0)
        return Fail(options, kInitializeFailed, "other programs have all modules that the daemon sends to");
    int printed = 0;
    for (int seen = 0; printed >= 0 && stop == 0 && !OutputClosed(); seen += printed)
    {
        if (options.count != 0 && seen >= options.count) break;
        printed = PrintArrived(options, patterns, &modules, options.count == 0 ? INT_MAX : options.count - seen);
        const timespec pause = {0, kLookNs};
        if (printed == 0) nanosleep(&pause, nullptr);
    }
    for (BusClient& module : modules) BusClientClose(&module);
    return printed < 0 ? 1 : 0;
}
}  // namespace kobd::client
