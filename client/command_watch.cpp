// kobctl watch: joins as the module that is told of changes and prints what arrives.
#include <csignal>
#include <cstdio>
#include <ctime>
#include <string>

#include "client/commands.h"
#include "client/request.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
constexpr int kLookMs = 200;  // how long a signal may wait to be seen

volatile sig_atomic_t stop = 0;

const char* Meaning(uint16_t id)
{
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

// The items of a message in words, or as the members of a JSON object.
std::string Describe(const MessageHeader* message, bool json)
{
    static const char* const kWords[] = {"result", "object", "value", "table", "index", "column", "parent"};
    std::string out;
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
            out += " " + word + "=" + text;
    }
    return out + (reader.Broken() && !json ? " (cut)" : "");
}

void Print(const Options& options, const MessageHeader* message)
{
    char stamp[32];
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    strftime(stamp, sizeof stamp, "%H:%M:%S", &local);
    const std::string items = Describe(message, options.json);
    if (options.json)
        printf("{\"time\":\"%s\",\"id\":%d,\"event\":\"%s\"%s}\n", stamp, message->id, Meaning(message->id),
               items.c_str());
    else
        printf("%s %s (id %d)%s\n", stamp, Meaning(message->id), message->id, items.c_str());
    fflush(stdout);
}
}  // namespace

int CommandWatch(const Options& options, const Words&)
{
    signal(SIGINT, [](int) { stop = 1; });
    signal(SIGTERM, [](int) { stop = 1; });
    BusClient module;
    if (BusClientJoin(&module, kModuleNotify) != 0)
        return Fail(options, kInitializeFailed, "another program is already told of changes (module 0x5A510003)");
    alignas(MessageHeader) static char bytes[kMessageMax];
    auto* message = reinterpret_cast<MessageHeader*>(bytes);
    int status = 0;
    for (int seen = 0; stop == 0 && (options.count == 0 || seen < options.count);)
    {
        const int code = BusClientReceive(&module, message, kLookMs);
        if (code == kReplyTimeout) continue;
        if (code != 0)
        {
            status = Fail(options, code, "the queue of module 0x5A510003 was removed");
            break;
        }
        Print(options, message);
        ++seen;
        if (ferror(stdout)) break;
    }
    BusClientClose(&module);
    return status;
}
}  // namespace kobd::client
