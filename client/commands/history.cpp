// kobctl history [PATTERN]: what was changed, when, and by which program.
#include <algorithm>

#include "client/arguments/given_names.h"
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
    const auto quoted = [](const std::optional<std::string>& text)
    { return "\"" + ShownInLine(text.value_or("")) + "\""; };
    return quoted(change.old) + " -> " + quoted(change.now);
}

// Which object, row, column of a row, or key of a store has changed.
Json WhatJson(const PastChange& change)
{
    if (change.kind == "object") return {{"name", change.name}};
    if (!change.IsRow()) return {{"store", change.kind}, {"key", change.name}};
    Json what = {{"table", change.name}, {"index", change.number}};
    if (!change.IsRowItself()) what["column"] = change.field;
    return what;
}

Json JsonOf(const PastChange& change)
{
    Json json = {
        {"commit", change.batch}, {"time", change.time}, {"process", change.process}, {"program", change.program}};
    json.update(WhatJson(change));
    const kobd_description* described = change.kind == "object" ? kobd_describe(change.name.c_str())
                                        : change.IsRow()
                                            ? kobd_describe_column(change.name.c_str(), change.field.c_str())
                                            : nullptr;
    const auto value_or_null = [&](const std::optional<std::string>& text)
    { return text ? ValueJson(described, *text) : Json(); };
    if (change.IsRowItself())
        json["row"] = WhatText(change);
    else
        json.update({{"old", value_or_null(change.old)}, {"new", value_or_null(change.now)}});
    json["undo"] = change.can_return ? Json(change.step) : Json();
    return json;
}

// Whether something of this name could have changed: an object, a row of a table, or a key of a store.
bool IsKnown(const Options& options, const std::string& pattern)
{
    Words names = KnownNames();
    for (const char* store : {"nvram", "config"})
        for (const std::string& key : host::StoreKeys(store)) names.push_back(std::string(store) + " " + key);
    const bool row = FindTable(pattern.substr(0, pattern.find(' '))) != nullptr;
    return row || std::ranges::any_of(
                      names, [&](const std::string& name) { return MatchesName(pattern, name, options.exact_case); });
}

Failure ReadAskedChanges(const Options& options, const Words& words, std::vector<PastChange>* changes)
{
    UseStateToShow();
    if (Failure failure = ReadPastChanges(changes)) return {failure.code, "history: " + failure.what};
    std::erase_if(*changes, [&](const PastChange& change)
                  { return change.time < options.since_s || !MatchesAny(words, change.Name(), options.exact_case); });
    if (options.count > 0 && changes->size() > static_cast<size_t>(options.count))
        changes->erase(changes->begin(), changes->end() - options.count);
    return {};
}
}  // namespace

Outcome CommandHistory(const Options& options, const Words& given)
{
    Words words;
    if (Failure failure = ReadWords(given, &words)) return failure;
    std::erase(words, "");  // which means all
    std::vector<PastChange> changes;
    if (Failure failure = ReadAskedChanges(options, words, &changes)) return failure;
    for (const std::string& word : words)
        if (!IsKnown(options, word))
            return Failure{kNotFound,
                           "no object, table or key matches '" + word + "'" + DidYouMean(word, KnownNames())};
    if (changes.empty()) SayError("no change" + (words.empty() ? "" : " of " + Joined(words)) + " is recorded");
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
