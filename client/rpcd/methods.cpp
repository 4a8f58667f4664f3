// What each method does: it runs the command of the same work and makes an object of its outcome. A secret is shown by
// the method "reveal" alone, so that an access list can give reading without it.
#include "client/rpcd/methods.h"

#include "client/commands/commands.h"
#include "client/dictionary/names.h"
#include "client/rpcd/errors.h"
#include "client/rpcd/row_methods.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
// Reads the names that "names" and "match" say. An unknown name fails.
Failure AskedNames(const Json& arguments, const std::string& kind, const Words& known, Words* names)
{
    for (const std::string& name : TextsOf(arguments, "names"))
    {
        if (std::ranges::find(known, name) == known.end())
            return {kNotFound, name + ": no " + kind + " has this name" + DidYouMean(name, known)};
        names->push_back(name);
    }
    const std::string pattern = TextOf(arguments, "match");
    for (const std::string& name : pattern.empty() ? Words() : known)
        if (MatchesName(pattern, name)) names->push_back(name);
    if (names->empty()) return {kNotFound, pattern.empty() ? "no names given" : "no " + kind + " matches " + pattern};
    return {};
}

std::vector<AskedValue> AskedTexts(const Json& arguments)
{
    std::vector<AskedValue> asked;
    for (const std::string& name : TextsOf(arguments, "names")) asked.push_back({name, name});
    return asked;
}

Json ReadableValues(const Options& options, const Json& arguments, bool secrets)
{
    Words asked;
    if (Failure failure = AskedNames(arguments, "object that can be read", ReadableObjects(), &asked))
        return ErrorReply(failure, AskedTexts(arguments));
    Words names;
    Words hidden;
    for (const std::string& name : asked) (secrets || !IsSecretObject(name) ? names : hidden).push_back(name);
    Outcome outcome = names.empty() ? Outcome(Json::object(), "") : CommandGet(options, names);
    for (const std::string& name : hidden) outcome.notes.push_back(name + " is a secret, which reveal shows");
    return ReplyOf(outcome, "values");
}

Json GetValues(const Options& options, const Json& arguments) { return ReadableValues(options, arguments, false); }

// An index is that of a row.
Failure CheckIndex(const Json& arguments)
{
    if (arguments.contains("table") || !arguments.contains("index")) return {};
    return {kInvalidArgument, "index is given without table"};
}

Json Reveal(const Options& options, const Json& arguments)
{
    if (Failure failure = CheckIndex(arguments)) return ErrorReply(failure);
    if (arguments.contains("table") && (arguments.contains("names") || arguments.contains("match")))
        return ErrorReply({kInvalidArgument, "reveal takes table, or names and match, and not both"});
    return arguments.contains("table") ? RowsReply(options, arguments, true) : ReadableValues(options, arguments, true);
}

std::vector<AskedValue> AskedObjects(const Assignments& pairs)
{
    std::vector<AskedValue> asked;
    for (const Assignment& pair : pairs)
        if (const ObjectEntry* object = FindObject(pair.name))
            asked.push_back({pair.Text(), pair.name, pair.value, Accepts(*object)});
    return asked;
}

Words WordsOf(const Assignments& pairs)
{
    Words words;
    for (const Assignment& pair : pairs) words.push_back(pair.Text());
    return words;
}

Json SetValues(const Options& options, const Json& arguments)
{
    const Assignments pairs = ValuesOf(arguments);
    if (pairs.empty()) return ErrorReply({kInvalidArgument, "no values given"});
    for (const Assignment& pair : pairs)
        if (FindObject(pair.name) == nullptr)
            return ErrorReply({kNotFound, pair.Text() + ": " + NoSuchName("object", pair.name)},
                              {{pair.Text(), pair.name, pair.value}});
    Options set = options;
    set.silent = FlagOf(arguments, "silent");
    set.confirm_s = NumberOf(arguments, "confirm").value_or(0);
    if (arguments.contains("confirm") && (set.confirm_s < 1 || set.confirm_s > kLongestConfirm))
        return ErrorReply({kInvalidArgument, "confirm takes seconds from 1 to 604800"});
    Outcome outcome = CommandSet(set, WordsOf(pairs));
    outcome.data = Json::array();
    for (const Assignment& pair : pairs) outcome.data.push_back(pair.name);
    return ReplyOf(outcome, "set", AskedObjects(pairs));
}

Json CheckValues(const Options& options, const Json& arguments)
{
    if (Failure failure = CheckIndex(arguments)) return ErrorReply(failure);
    if (arguments.contains("table")) return CheckRow(options, arguments);
    const Words words = WordsOf(ValuesOf(arguments));
    if (words.empty()) return ErrorReply({kInvalidArgument, "no values given"});
    return ReplyOf(CommandCheck(options, words), "checks");
}

Json Confirm(const Options& options, const Json&)
{
    Outcome outcome = CommandConfirm(options, {});
    outcome.data = true;
    return ReplyOf(outcome, "confirmed");
}

Json Describe(const Options& options, const Json& arguments)
{
    Words known = AllNames(kObjectRows);
    for (const TableEntry& table : kTableRows) known.emplace_back(table.name);
    Words names;
    if (Failure failure = AskedNames(arguments, "object or table", known, &names))
        return ErrorReply(failure, AskedTexts(arguments));
    Options as_json = options;  // which does without what is simulated
    as_json.json = true;
    return ReplyOf(CommandDescribe(as_json, names), "described");
}

Json History(const Options& options, const Json& arguments)
{
    Options some = options;
    some.count = NumberOf(arguments, "count").value_or(0);
    const std::string pattern = TextOf(arguments, "match");
    return ReplyOf(CommandHistory(some, pattern.empty() ? Words() : Words{pattern}), "changes");
}

Json Undo(const Options& options, const Json& arguments)
{
    Outcome outcome = CommandUndo(options, {std::to_string(NumberOf(arguments, "count").value_or(1))});
    if (!outcome.failure) outcome.data = Json(outcome.data["undone"]);
    return ReplyOf(outcome, "undone");
}

using enum ArgumentKind;
constexpr Argument kNames[] = {{"names", kTexts}, {"match", kText}};
constexpr Argument kRevealed[] = {{"names", kTexts}, {"match", kText}, {"table", kText}, {"index", kNumber}};
constexpr Argument kSetTakes[] = {{"values", kValues, true}, {"silent", kFlag}, {"confirm", kNumber}};
constexpr Argument kCheckTakes[] = {{"values", kValues, true}, {"table", kText}, {"index", kNumber}};
constexpr Argument kHistoryTakes[] = {{"match", kText}, {"count", kNumber}};
constexpr Argument kUndoTakes[] = {{"count", kNumber}};
constexpr Argument kTableTakes[] = {{"table", kText, true}, {"index", kNumber}};
constexpr Argument kRowSetTakes[] = {
    {"table", kText, true}, {"index", kNumber, true}, {"values", kValues, true}, {"silent", kFlag}};
constexpr Argument kRowAddTakes[] = {{"table", kText, true}, {"values", kValues}, {"parent", kText}};
constexpr Argument kRowDelTakes[] = {{"table", kText, true}, {"index", kNumber, true}};

constexpr Method kMethods[] = {
    {"get", kNames, GetValues},        {"set", kSetTakes, SetValues},        {"check", kCheckTakes, CheckValues},
    {"confirm", {}, Confirm},          {"describe", kNames, Describe},       {"table", kTableTakes, ReadTableRows},
    {"row_set", kRowSetTakes, SetRow}, {"row_add", kRowAddTakes, AddNewRow}, {"row_del", kRowDelTakes, DeleteOneRow},
    {"reveal", kRevealed, Reveal},     {"history", kHistoryTakes, History},  {"undo", kUndoTakes, Undo}};
}  // namespace

std::span<const Method> Methods() { return kMethods; }
}  // namespace kobd::client
