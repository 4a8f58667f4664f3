// Objects: what their checks said in the log, else what the dictionary says.
#include <algorithm>

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

// The pair that was refused, with the reason from the log or the dictionary. Where neither has one, all pairs with
// what their checks accept.
Explained WhyNotSet(const Pairs& pairs, const std::vector<LogLine>& log)
{
    Words passed;
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
        passed.push_back(TextOf(pair) + (object->validator != nullptr ? ": it takes " + Accepts(*object) : ""));
    }
    Explained why = {.reason = "the check of one of these values refuses it", .text = Joined(passed)};
    if (pairs.size() != 1) return why;
    const ObjectEntry& object = *FindObject(pairs[0].name);
    why.object = pairs[0].name;
    why.value = pairs[0].value;
    why.right = Accepts(object);
    why.reason = object.validator != nullptr ? std::string(object.validator) + " refuses it" : "the daemon refuses it";
    return why;
}

// Every value was found right, but the router could not apply one of them.
Explained WhyNotApplied(const Pairs& pairs)
{
    Words names;
    for (const NameAndValue& pair : pairs) names.push_back(pair.name);
    Explained why =
        Simple("the router could not set " + std::string(names.size() == 1 ? "" : "one of ") + Joined(names));
    if (pairs.size() != 1) return why;
    why.object = pairs[0].name;
    why.value = pairs[0].value;
    return why;
}

std::string WhyNotRead(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object == nullptr && FindTable(name) != nullptr) return name + " is a table, not an object";
    if (object == nullptr) return NoSuchName("object", name);
    return object->access == Access::kWriteOnly ? name + " is write-only"
                                                : "the router could not read " + name + ", see the log";
}
}  // namespace

Explained OfSet(int code, const Pairs& pairs, const std::vector<LogLine>& log)
{
    const bool judged =
        std::ranges::any_of(pairs, [](const auto& one) { return bool(JudgeObject(one.name, one.value)); });
    return code == kInvalidArgument || judged ? WhyNotSet(pairs, log) : WhyNotApplied(pairs);
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
