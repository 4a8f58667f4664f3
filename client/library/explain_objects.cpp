// Objects: what their checks said in the log, else what the dictionary says.
#include <algorithm>
#include <cstddef>

#include "client/library/explain.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string TextOf(const NameAndValue& pair) { return pair.name + "=" + pair.value; }

// "NAME=VALUE: REASON; it takes RIGHT"; without a reason where there is none to tell.
Explained OfObject(const NameAndValue& pair, const std::string& reason, const std::string& right)
{
    Explained why = {.object = pair.name, .value = pair.value, .reason = reason};
    if (!right.empty()) why.right = right;
    const std::string takes = right.empty() ? "" : "it takes " + right;
    why.text = TextOf(pair) + ": " + reason + (reason.empty() || takes.empty() ? "" : "; ") + takes;
    return why;
}

// The pair that was refused, with the reason from the log or the dictionary; nothing where neither has one.
std::optional<Explained> FindRefused(const Pairs& pairs, const std::vector<LogLine>& log)
{
    for (const NameAndValue& pair : pairs)
    {
        const ObjectEntry* object = FindObject(pair.name);
        const Fault fault = JudgeObject(pair.name, pair.value);
        const auto said = RefusalIn(log, pair.name, pair.value);
        if (said && object != nullptr)
        {
            Explained why = OfObject(pair, *said, Accepts(*object));
            if (said->empty()) why.reason = fault ? fault.reason : std::string(object->validator) + " refuses it";
            return why;
        }
        if (fault)
        {
            Explained why = OfObject(pair, fault.reason, fault.right);
            why.text = fault.Text(pair.name, pair.value);
            return why;
        }
    }
    return std::nullopt;
}

// A check has refused one of them without a reason: all pairs with what their checks accept.
Explained NoneFound(const Pairs& pairs)
{
    Words passed;
    for (const NameAndValue& pair : pairs)
    {
        const ObjectEntry* object = FindObject(pair.name);
        passed.push_back(TextOf(pair) + (object->validator != nullptr ? ": it takes " + Accepts(*object) : ""));
    }
    Explained why = {.reason = "the check of one of these values refuses it",
                     .text = (pairs.size() > 1 ? "one of these values: " : "") + Joined(passed, "; ")};
    if (pairs.size() != 1) return why;
    const ObjectEntry& object = *FindObject(pairs[0].name);
    why.object = pairs[0].name;
    why.value = pairs[0].value;
    why.right = Accepts(object);
    why.reason = object.validator != nullptr ? std::string(object.validator) + " refuses it" : "the daemon refuses it";
    return why;
}

// Every value was found right, but the router could not apply one of them. Two objects that are set by one function of
// the router cannot be told apart.
Explained WhyNotApplied(const Pairs& pairs, const std::optional<FailedChange>& told)
{
    Words names;
    for (const NameAndValue& pair : pairs) names.push_back(pair.name);
    const bool known = told && told->changed < pairs.size() && pairs[told->changed].name == told->name;
    if (!known && pairs.size() != 1) return Simple("the router could not set one of " + Joined(names));
    const size_t failed = known ? told->changed : 0;
    Explained why = Simple("the router could not set " + names[failed]);
    why.object = pairs[failed].name;
    why.value = pairs[failed].value;
    why.changed = failed;
    if (pairs.size() > 1) why.text = HowFar(names, failed) + why.text;
    return why;
}

std::string WhyNotRead(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (object == nullptr) return NoSuchName("object", name);
    return object->access == Access::kWriteOnly ? name + " is write-only"
                                                : "the router could not read " + name + ", see /tmp/kobd.log";
}
}  // namespace

std::optional<FailedChange> AskWhatFailed(kobd_client* client)
{
    constexpr int kLongestMs = 1000;  // the imitated router answers at once, another one never
    if (client->host_is_silent) return std::nullopt;
    const auto timeout_ms = client->timeout_ms;
    client->timeout_ms = std::min(timeout_ms.value_or(kLongestMs), kLongestMs);
    const int code = kobd_host_call(client, KOBD_HOST_FAILED, nullptr);
    client->timeout_ms = timeout_ms;
    client->host_is_silent = !client->answered && !DaemonIsBusy();
    FailedChange failed;
    kobd_item item{};
    if (code != kSuccess || kobd_reply_next(client, &item) != 1 || item.text == nullptr) return std::nullopt;
    failed.name = item.text;
    if (item.tag == kTagTableName && kobd_reply_next(client, &item) == 1) failed.index = item.number;
    if (kobd_reply_next(client, &item) != 1 || item.tag != kTagValue || item.number < 0) return std::nullopt;
    failed.changed = static_cast<size_t>(item.number);
    return failed;
}

std::string HowFar(const Words& texts, size_t failed)
{
    const auto place = texts.begin() + static_cast<std::ptrdiff_t>(failed);
    const Words before(texts.begin(), place);
    const Words after(place + 1, texts.end());
    return "set: " + (before.empty() ? "nothing" : Joined(before)) +
           (after.empty() ? "" : "; not set: " + Joined(after)) + "; ";
}

Explained OfSet(kobd_client* client, int code, const Pairs& pairs)
{
    if (const auto refused = FindRefused(pairs, client->log.Lines())) return *refused;
    const bool is_clear = pairs.size() == 1 && code != kInvalidArgument;
    const auto told = is_clear ? std::nullopt : AskWhatFailed(client);
    return code == kInvalidArgument && !told ? NoneFound(pairs) : WhyNotApplied(pairs, told);
}

Explained OfGet(int code, const Pairs& names)
{
    if (names.size() != 1) return Simple("one of these values cannot be read");
    const std::string& name = names[0].name;
    Explained why = Simple(code == kBufferLimit ? "the value of " + name + " does not fit" : WhyNotRead(name));
    why.object = name;
    return why;
}
}  // namespace kobd::client
