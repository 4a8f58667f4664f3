// kobctl reset NAME...: the values that objects had from the factory.
#include <algorithm>
#include <optional>

#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/state/router_state.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
// The objects that a pattern may reset: those of an export, and those that show the value of another object.
Words Resettable()
{
    Words names;
    for (const ObjectEntry& object : kObjectRows)
        if (IsExported(object) || (object.shared && object.access == Access::kReadWrite))
            names.emplace_back(object.name);
    return names;
}

// Patterns must not reset everything unless that is said.
Failure CheckBreadth(const Options& options, const Words& names, const Words& all)
{
    const auto is_named = [&](const std::string& name) { return std::ranges::find(names, name) != names.end(); };
    if (options.all || !std::ranges::all_of(all, is_named)) return {};
    return {kWrongUse, "this would reset all " + std::to_string(all.size()) +
                           " objects, also the addresses and passwords by which you reach the router; add --all if you "
                           "mean it"};
}

Failure CheckName(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (FindTable(name) != nullptr)
        return {kInvalidArgument, name +
                                      " is a table, and only objects are reset; change its rows with kobctl table "
                                      "set, add and del"};
    if (object == nullptr) return NoSuchNameFailure("object", name);
    if (object->access == Access::kReadWrite) return {};
    const bool action = object->access == Access::kAction;
    return {kInvalidArgument, name + " cannot be reset: it is " + (action ? "an action" : AccessText(object->access))};
}

// Of an object that the daemon itself keeps there is no factory value.
Failure ReadFactoryValue(const std::string& name, std::optional<std::string>* value)
{
    const auto texts = AskHost(KOBD_HOST_FACTORY, {{KOBD_TAG_OBJECT_NAME, name}});
    if (!texts) return {kSystemError, "only the imitated router tells factory values"};
    if (!texts->empty()) *value = texts->front();
    return {};
}

// The values to set. A pattern means only those that differ from the router and that can be set; a name means itself.
Failure PlanReset(const Options& options, const Words& names, const Words& given, Assignments* pairs)
{
    Values now;
    if (const Response response = ReadValues(options, names, &now); response.code != 0)
        return {response.code, response.why};
    for (const std::string& name : names)
    {
        std::optional<std::string> value;
        if (Failure failure = ReadFactoryValue(name, &value)) return failure;
        const bool is_given = std::ranges::find(given, name) != given.end();
        if (is_given && !value) return {kNotFound, name + " has no factory value, because the daemon itself keeps it"};
        if (!value) continue;
        const std::string wrong = WhatIsWrong(name, *value);
        if (is_given && !wrong.empty()) return {kInvalidArgument, "its factory value cannot be set: " + wrong};
        if (is_given || (wrong.empty() && now[name] != *value)) pairs->push_back({name, *value});
    }
    return {};
}

Failure ReadReset(const Options& options, const Words& words, Assignments* pairs)
{
    const Words all = Resettable();
    Words names;
    if (Failure failure = ReadNames(options, words, "object that can be set", all, &names)) return failure;
    if (Failure failure = CheckBreadth(options, names, all)) return failure;
    for (const std::string& name : names)
        if (Failure failure = CheckName(name)) return failure;
    Words given = names;
    std::erase_if(given, [&](const std::string& name) { return std::ranges::find(words, name) == words.end(); });
    return PlanReset(options, names, given, pairs);
}
}  // namespace

Outcome CommandReset(const Options& options, const Words& words)
{
    Assignments pairs;
    if (Failure failure = ReadReset(options, words, &pairs))
        return failure.code == kWrongUse ? failure
                                         : Failure{failure.code, "reset: " + failure.what + "; nothing was set"};
    Words assignments;
    for (const Assignment& pair : pairs) assignments.push_back(pair.Text());
    if (pairs.empty()) return {{{"set", Json::object()}}, "the values are those of the factory already\n"};
    Options showing = options;
    showing.diff = !options.json;
    return CommandSet(showing, assignments);
}
}  // namespace kobd::client
