// kobctl watch [PATTERN...]: what the daemon sends to other modules, with old and new values, and network events; with
// --poll, values whose changes are not announced.
#include <algorithm>
#include <cstdio>
#include <ctime>

#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/traffic/known_values.h"
#include "client/traffic/listener.h"
#include "client/traffic/message_text.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
std::string ShownValue(const ValueChange& change, const std::optional<std::string>& value)
{
    return IsSecretObject(change.name) || IsSecretColumn(change.name) ? "(secret)" : value.value_or("");
}

std::string QuotedText(const ValueChange& change, const std::optional<std::string>& value)
{
    return value ? "\"" + Escaped(ShownValue(change, value)) + "\"" : "?";
}

std::string ValueText(const ValueChange& change)
{
    return Escaped(change.name) + ": " + QuotedText(change, change.now);
}

std::string ChangeText(const ValueChange& change)
{
    return Escaped(change.name) + ": " + QuotedText(change, change.old) + " -> " + QuotedText(change, change.now);
}

std::string NowText() { return TimeText(static_cast<int64_t>(::time(nullptr)) * 1'000'000); }

// `table` is that of the column that has changed, empty for an object.
Json ChangeJson(const ValueChange& change, const std::string& table = "")
{
    const char* name = change.name.c_str();
    const kobd_description* described = table.empty() ? kobd_describe(name) : kobd_describe_column(table.c_str(), name);
    const auto value_or_null = [&](const std::optional<std::string>& value)
    { return value ? ValueJson(described, ShownValue(change, value)) : Json(); };
    return {{table.empty() ? "name" : "column", change.name},
            {"old", value_or_null(change.old)},
            {"new", value_or_null(change.now)}};
}

void Show(const Options& options, const Json& json, const std::string& line)
{
    (void)Print(options, {json, line + "\n"});
    fflush(stdout);
}

void ShowMessage(const Options& options, const kobd_tapped& message, const std::vector<ValueChange>& changes)
{
    const MessageContent content = ContentOf(message, false);
    const std::string time = TimeText(message.time_us);
    std::string line = time + "  " + ModuleName(message.module) + "  " + MessageName(message);
    Json json = {
        {"time", TimeJson(message.time_us)}, {"module", ModuleName(message.module)}, {"id", message.id},
        {"message", MessageName(message)},   {"process", message.process},           {"program", message.program}};
    for (const Json& thing : content.json) json.update(thing);
    json.erase("columns");
    if (message.id == kEventTableChanged && json.contains("table"))
        line += "  " + Escaped(json["table"].get<std::string>()) + " " + json.value("index", Json()).dump();
    else if (changes.empty() && !content.text.empty())
        line += "  " + content.text;
    if (!changes.empty()) json["changes"] = Json::array();
    for (const ValueChange& change : changes)
    {
        json["changes"].push_back(ChangeJson(change, json.value("table", "")));
        line += (&change == &changes.front() ? "  " : ", ") + ChangeText(change);
    }
    if (message.process != 0)
        line += "  by " + std::string(*message.program != 0 ? Escaped(message.program) : "?") + " (" +
                std::to_string(message.process) + ")";
    Show(options, json, line + (content.whole ? "" : " (cut)"));
}

// What the daemon sends to other modules, and network events, which it is sent itself.
bool IsNews(const kobd_tapped& message)
{
    return message.kind == KOBD_TAP_SENT || (message.kind == KOBD_TAP_RECEIVED && message.message_class == kClassEvent);
}

bool IsEnough(const Options& options, int printed) { return options.count != 0 && printed >= options.count; }

Outcome WatchAnnouncements(const Options& options, const Words& patterns)
{
    Listener listener;
    KnownValues known;
    Failure failure = listener.Open(false);
    if (!failure && listener.IsTap()) failure = known.Read(options, patterns);
    std::optional<kobd_tapped> message;
    int printed = 0;
    while (!failure && !Stopped() && !IsEnough(options, printed))
    {
        failure = listener.Next(&message);
        if (!message) continue;
        known.Note(*message);
        if (!IsNews(*message) || !IsAskedFor(options, patterns, *message)) continue;
        ShowMessage(options, *message,
                    message->module == kModuleNotify ? known.ChangesOf(options, *message) : std::vector<ValueChange>());
        ++printed;
    }
    return failure ? failure : TooFew(options, "watch", printed);
}

// Waits until the next look is due. False when it was stopped.
bool Pause(int milliseconds)
{
    constexpr int kStepMs = 20;
    for (int left = milliseconds; left > 0 && !Stopped(); left -= kStepMs)
    {
        const timespec pause = {0, std::min(left, kStepMs) * 1'000'000L};
        nanosleep(&pause, nullptr);
    }
    return !Stopped();
}

// Reads the values; waits for the daemon where none runs.
Failure ReadOrWait(const Options& options, const Words& names, Values* values)
{
    constexpr int kLookMs = 500;
    for (bool told = false; !Stopped(); told = true)
    {
        values->clear();
        const Response response = ReadValues(options, names, values);
        if (!response.from_bus || response.code != KOBD_NOT_RUNNING || IsAnotherUsers())
            return FailureOf(response, "watch");
        if (!told) SayError("waiting for kobd");
        Pause(kLookMs);
    }
    return {};
}

Outcome WatchValues(const Options& options, const Words& patterns)
{
    if (patterns.empty()) return Failure{kWrongUse, "watch --poll takes the names of the objects to read"};
    const Words readable = ReadableObjects();
    Words names;
    if (Failure failure = ReadNames(options, patterns, "object that can be read", readable, &names)) return failure;
    for (const std::string& name : names)
        if (std::ranges::find(readable, name) == readable.end())
            return Failure{kNotFound, FindTable(name) != nullptr
                                          ? name + " is a table, and --poll reads objects only"
                                          : name + " is no object that can be read" + DidYouMean(name, readable)};
    Values before;
    if (Failure failure = ReadOrWait(options, names, &before)) return failure;
    for (const auto& [name, value] : before)  // for a person, who would not know whether it works
        if (!options.json && !options.all) Show(options, {}, NowText() + "  " + ValueText({name, {}, value}));
    int printed = 0;
    for (bool first = options.all; !IsEnough(options, printed) && (first || Pause(options.poll_ms)); first = false)
    {
        Values now;
        if (Failure failure = ReadOrWait(options, names, &now)) return failure;
        for (const auto& [name, value] : now)
        {
            const ValueChange change = {name, before[name], value};
            if ((!options.all && value == before[name]) || IsEnough(options, printed++)) continue;
            const int64_t time_us = static_cast<int64_t>(::time(nullptr)) * 1'000'000;
            Show(options, {{"time", TimeJson(time_us)}, {"changes", Json::array({ChangeJson(change)})}},
                 TimeText(time_us) + "  " + (value == before[name] ? ValueText(change) : ChangeText(change)));
        }
        before = now;
    }
    return TooFew(options, "watch", printed);
}
}  // namespace

Outcome CommandWatch(const Options& options, const Words& patterns)
{
    StopAfter(options.timeout_ms);
    if (options.poll_ms != 0) return WatchValues(options, patterns);
    if (options.all) return Failure{kWrongUse, "watch --all shows each reading of --poll"};
    if (Failure failure = CheckPatterns(options, patterns)) return failure;
    return WatchAnnouncements(options, patterns);
}
}  // namespace kobd::client
