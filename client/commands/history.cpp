// kobctl history [PATTERN]: what was changed, when, and by which program.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/state/daemon_state.h"
#include "client/state/past_changes.h"

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
}  // namespace

Outcome CommandHistory(const Options& options, const Words& words)
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
}  // namespace kobd::client
