// kobctl history [PATTERN]: what was changed, when, and by which program.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/output/terminal.h"
#include "client/state/daemon_state.h"
#include "client/state/past_changes.h"
#include "daemon/base/result.h"
#include "host/state/stores.h"

namespace kobd::client
{
namespace
{
std::string WhatText(const PastChange& change)
{
    if (change.IsRowItself()) return change.now ? "added" : "deleted";
    const auto quoted = [](const std::optional<std::string>& text) { return "\"" + Shown(text.value_or("")) + "\""; };
    return quoted(change.old) + " -> " + quoted(change.now);
}

Json JsonOf(const PastChange& change)
{
    const auto text_or_null = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
    return {{"commit", change.batch},          {"time", change.time},
            {"process", change.process},       {"program", change.program},
            {"what", change.Name()},           {"old", text_or_null(change.old)},
            {"new", text_or_null(change.now)}, {"undo", change.step != 0 ? Json(change.step) : Json()}};
}
// Whether something of this name could have changed: an object, a row of a table, or a key of a store.
bool IsKnown(const std::string& pattern)
{
    Words names = KnownNames();
    for (const char* store : {"nvram", "config"})
        for (const std::string& key : host::StoreKeys(store)) names.push_back(std::string(store) + " " + key);
    const bool row = FindTable(pattern.substr(0, pattern.find(' '))) != nullptr;
    return row || std::ranges::any_of(names, [&](const std::string& name) { return MatchesName(pattern, name); });
}
}  // namespace

Outcome HistoryOutcome(const Options& options, const Words& words)
{
    UseStateToShow();
    std::vector<PastChange> changes;
    if (Failure failure = ReadPastChanges(&changes)) return Failure{failure.code, "history: " + failure.what};
    if (!words.empty())
        std::erase_if(changes, [&](const PastChange& change) { return !MatchesName(words[0], change.Name()); });
    if (options.count > 0 && changes.size() > static_cast<size_t>(options.count))
        changes.erase(changes.begin(), changes.end() - options.count);
    Outcome outcome(Json::array(), "");
    for (const PastChange& change : changes)
    {
        outcome.data.push_back(JsonOf(change));
        outcome.text += std::to_string(change.batch) + "  " + TimeText(change.time * 1'000'000) + "  " +
                        change.program + " (" + std::to_string(change.process) + ")  " + change.Name() + ": " +
                        WhatText(change) + "\n";
    }
    return outcome;
}

Outcome CommandHistory(const Options& options, const Words& words)
{
    Outcome outcome = HistoryOutcome(options, words);
    if (outcome.failure || !outcome.data.empty()) return outcome;
    if (!words.empty() && !IsKnown(words[0]))
        return Failure{kNotFound,
                       "no object, table or key matches '" + words[0] + "'" + DidYouMean(words[0], KnownNames())};
    const bool all = words.empty() || words[0].empty();
    SayError("no change" + (all ? "" : " of " + words[0]) + " is recorded");
    return outcome;
}
}  // namespace kobd::client
