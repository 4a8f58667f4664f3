// kobctl set NAME=VALUE... [--silent] [--confirm SECONDS], and commit.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/output/terminal.h"
#include "client/state/daemon_state.h"
#include "client/state/pending_set.h"
#include "daemon/base/result.h"
#include "host/state/history.h"

namespace kobd::client
{
namespace
{
Words SetNames(const Assignments& pairs)
{
    Words names;
    for (const Assignment& pair : pairs) names.push_back(pair.name);
    return names;
}

// What reading back tells of a set that the router refused half way.
struct Applied
{
    Words changed = {};
    Words unknown = {};  // they cannot be read
    Words failed = {};   // the one that failed, or those of which one did
};

// Values are applied in their order up to the first that fails: whatever stands before the last one that changed was
// applied, and the first one that has not changed was not.
Applied FindApplied(const Options& options, const Assignments& pairs, const Values& before)
{
    Values now;
    Applied applied;
    (void)ReadValues(options, SetNames(pairs), &now);
    std::erase_if(now, [](const auto& read) { return FindObject(read.first)->access == Access::kAction; });  // shows 0
    const auto differs = [](const Values& values, const Assignment& pair)
    { return values.contains(pair.name) && values.at(pair.name) != pair.value; };
    size_t first = 0;
    size_t end = pairs.size();
    for (size_t i = 0; i < pairs.size(); ++i)
    {
        const bool is_new = now.contains(pairs[i].name) && !differs(now, pairs[i]);
        if (is_new && differs(before, pairs[i])) first = i + 1;
        if (differs(now, pairs[i]) && end == pairs.size()) end = i + 1;
    }
    for (size_t i = 0; i < end; ++i)
    {
        const bool known = now.contains(pairs[i].name) && before.contains(pairs[i].name);
        if (i >= first)
            applied.failed.push_back(pairs[i].name);
        else if (known && differs(before, pairs[i]))
            applied.changed.push_back(pairs[i].name);
        else if (!known)
            applied.unknown.push_back(pairs[i].name);
    }
    return applied;
}

// "set: webLanguage; the router could not set one of webHttpPort, webHttpsPort".
std::string AppliedText(const Applied& applied)
{
    const bool one = applied.failed.size() == 1;
    return "set: " + (applied.changed.empty() ? "nothing" : Joined(applied.changed)) +
           (applied.unknown.empty() ? "" : "; unknown: " + Joined(applied.unknown)) + "; the router could not set " +
           (one ? "" : "one of ") + Joined(applied.failed);
}

}  // namespace

Outcome SetValues(const Options& options, const Assignments& pairs, Response* response, Values* before)
{
    // Of a single value there is nothing to tell apart.
    if (pairs.size() > 1 || options.diff) (void)ReadValues(options, SetNames(pairs), before);
    *response = Call(options, options.silent ? KOBD_SET_SILENT : KOBD_SET, SetItems(pairs));
    if (response->too_large) return Failure{kBufferLimit, TooLarge("these values") + "; nothing was set"};
    if (response->code == 0 || response->from_bus) return FailureOfChange(*response, "set");
    for (const Assignment& pair : pairs)
        if (response->code == kNotFound && FindObject(pair.name) == nullptr && FindTable(pair.name) == nullptr)
            return NoSuchNameFailure("object", pair.name);
    Outcome outcome = Failure{response->code, response->why};
    // Of a single value that was named there is nothing more to tell.
    const bool is_open = pairs.size() > 1 || response->object.empty();
    Applied applied = is_open ? FindApplied(options, pairs, *before) : Applied();
    // A check refuses with 2, and then nothing has been changed.
    if (applied.failed.empty() || (response->code == kInvalidArgument && applied.changed.empty())) return outcome;
    // Where the router does not tell which object failed, the values do.
    if (response->object.empty())
        outcome.failure = FailureWithCode(response->code, AppliedText(applied));
    else
        applied.failed = {response->object};
    if (applied.changed.empty() && applied.unknown.empty()) return outcome;
    outcome.particulars = {{"changed", applied.changed}, {"failed", applied.failed}};
    if (!applied.unknown.empty()) outcome.particulars["unknown"] = applied.unknown;
    return outcome;
}

Json AddDifference(const Assignment& pair, const std::optional<std::string>& old, std::string* text)
{
    const kobd_description* object = kobd_describe(pair.name.c_str());
    const bool secret = object != nullptr && object->secret != 0;
    const auto shown = [&](const std::string& value) { return secret ? std::string(host::kSecretText) : value; };
    if (old) *text += DiffLine('-', pair.name + "=" + shown(*old));
    *text += DiffLine('+', pair.name + "=" + shown(pair.value));
    return {{"old", old ? ValueJson(object, shown(*old)) : Json()}, {"new", ValueJson(object, shown(pair.value))}};
}

namespace
{
// What was set; with --diff also what was there before, where it is known and differs.
Outcome SetOutcome(const Options& options, const Assignments& pairs, const Values& before)
{
    Outcome outcome({{"set", ValuesJson(pairs)}}, "");
    for (const Assignment& pair : pairs)
    {
        if (!options.diff) continue;
        const auto old = before.find(pair.name);
        const bool known = old != before.end();
        const bool same = known && old->second == pair.value;
        std::string text;
        outcome.data["set"][pair.name] = AddDifference(pair, known ? std::optional(old->second) : std::nullopt, &text);
        if (!same) outcome.text += text;
    }
    if (options.diff && outcome.text.empty()) outcome.text = "the router had these values already\n";
    return outcome;
}

// Keeps the old values, then sends the new ones. Prints nothing while it holds the lock of the pending set.
Outcome SetUntilConfirmed(const Options& options, const Assignments& pairs)
{
    std::optional<PendingSet> locked(std::in_place);
    PendingSet& pending = *locked;
    if (const Failure failure = pending.Begin(options, pairs))
        return Failure{failure.code, "set --confirm: " + failure.what + "; nothing was set"};
    const std::string said = "the old values return in " + Counted(static_cast<size_t>(options.confirm_s), "second") +
                             " unless kobctl confirm follows";
    Response response;
    Values before;
    Outcome outcome = SetValues(options, pairs, &response, &before);
    if (!outcome.failure)
    {
        pending.NoteNewValues(options, pairs);
        locked.reset();  // from here on it can be confirmed
        outcome = SetOutcome(options, pairs, before);
        outcome.data["confirm_within"] = options.confirm_s;
        outcome.text += said + "\n";
        AddNotSaved(options, "set", &outcome);
        return outcome;
    }
    if (response.MayBeDone())
        outcome.notes.push_back(said);
    else if (!ChangedNames(options, pending.OldValues()).empty() || pending.Withdraw())
    {
        // Refused after some values were applied: the router itself may refuse what the checks accept.
        const Failure failure = pending.TakeBack(options);
        outcome.failure.what += "; " + (failure ? failure.what : pending.Restored());
        outcome.particulars = {};
    }
    return outcome;
}
}  // namespace

Outcome CommandSet(const Options& options, const Words& words)
{
    Assignments pairs;
    if (Failure failure = ReadAssignments("set takes NAME=VALUE", words, &pairs)) return failure;
    if (options.confirm_s > 0 && options.silent) return Failure{kWrongUse, "set takes --silent or --confirm, not both"};
    if (options.confirm_s > 0) return SetUntilConfirmed(options, pairs);
    Response response;
    Values before;
    Outcome outcome = SetValues(options, pairs, &response, &before);
    if (!outcome.failure) outcome = SetOutcome(options, pairs, before);
    if (!outcome.particulars.is_null()) AddNotCommitted(&outcome);
    if (!options.silent) AddNotSaved(options, "set", &outcome);
    return outcome;
}

Outcome CommandCommit(const Options& options, const Words&)
{
    Outcome outcome = FailureOfChange(Call(options, KOBD_UPDATE, {}), "commit");
    if (!outcome.failure) outcome.data = {{"saved", true}};
    AddNotSaved(options, "committed", &outcome);
    return outcome;
}
}  // namespace kobd::client
