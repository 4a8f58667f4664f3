// kobctl check: says whether a set would be accepted. It asks the dictionary, and the daemon only for rows.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/output/terminal.h"
#include "client/rows/row_change.h"

namespace kobd::client
{
namespace
{
enum Verdict
{
    kOk,
    kOpen,  // only the daemon can tell
    kRefused,
};

// The verdicts so far, and the worst of them.
struct Judgement
{
    // `what` names the item in parts: "name" and "value", or "table", "index", "column" and "value".
    void Say(Verdict verdict, const Json& what, const std::string& item, const std::string& why)
    {
        static constexpr const char* kWords[] = {"ok", "open", "refused"};
        static constexpr Colour kColours[] = {Colour::kGreen, Colour::kYellow, Colour::kRed};
        static constexpr size_t kWidth = 9;
        data.push_back(what);
        data.back().update({{"item", item}, {"verdict", kWords[verdict]}, {"reason", why}});
        text += Coloured(kColours[verdict], kWords[verdict], kWidth) +
                ShownInLine(item + (why.empty() ? "" : ": ") + why) + "\n";
        worst = std::max(worst, verdict);
    }

    Json data = Json::array();
    std::string text = {};
    Verdict worst = kOk;
};

Json JsonOf(const Assignment& pair)
{
    return {{"name", pair.name}, {"value", ValueJson(kobd_describe(pair.name.c_str()), pair.value)}};
}

std::string DecidedBy(const std::string& check)
{
    return "the daemon decides (" + check + ")" + RuleOf(check, "; it takes ");
}

// Judges an item: `wrong` is what the dictionary says against it, `check` the name of the check that it has; both may
// be empty. Drops the item from the start of `wrong`, because the line shows it already.
void JudgeItem(const Json& what, const std::string& shown, const Assignment& item, std::string wrong, const char* check,
               Judgement* judgement)
{
    if (wrong.starts_with(item.Text() + ": ")) wrong.erase(0, item.Text().size() + 2);
    if (!wrong.empty()) return judgement->Say(kRefused, what, shown, wrong);
    judgement->Say(*check == 0 ? kOk : kOpen, what, shown, *check == 0 ? "" : DecidedBy(check));
}

void JudgeObjects(const Assignments& pairs, Judgement* judgement)
{
    for (const Assignment& pair : pairs)
    {
        const ObjectEntry* object = FindObject(pair.name);
        const bool checked = object != nullptr && object->validator != nullptr;
        JudgeItem(JsonOf(pair), pair.Text(), pair, WhatIsWrong(pair.name, pair.value), checked ? object->validator : "",
                  judgement);
    }
    if (!FitsOneRequest(SetItems(pairs)))
        judgement->Say(kRefused, Json::object(), "all of them", TooLarge("these values"));
}

void JudgeRow(const Options& options, const RowAddress& row, Judgement* judgement)
{
    if (!row.table->Has(kSet)) return judgement->Say(kRefused, JsonOf(row), row.Text(), NoOperation(*row.table, kSet));
    std::string missing;
    const Failure failure = FindMissingRow(options, "cannot tell whether this row exists", {row}, &missing);
    if (failure) return judgement->Say(kOpen, JsonOf(row), row.Text(), failure.what);
    JudgeItem(JsonOf(row), row.Text(), {}, missing, row.table->validator, judgement);
}

void JudgeChange(const Options& options, const RowChange& change, Judgement* judgement)
{
    JudgeRow(options, change.row, judgement);
    for (const Assignment& pair : change.values)
    {
        const std::string wrong = JudgeCell(*change.row.table, pair.name, pair.value).Text(pair.name, pair.value);
        Json what = JsonOf(change.row);
        what.update(
            {{"column", pair.name},
             {"value", ValueJson(kobd_describe_column(change.row.table->name, pair.name.c_str()), pair.value)}});
        // The line of the row names the check of the table, so that the line of a cell says no more than "open".
        if (wrong.empty() && *change.row.table->validator != 0)
            judgement->Say(kOpen, what, change.row.Text() + " " + pair.Text(), "");
        else
            JudgeItem(what, change.row.Text() + " " + pair.Text(), pair, wrong, "", judgement);
    }
}

Failure Judge(const Options& options, const Words& words, Judgement* judgement)
{
    Assignments pairs;
    RowChanges changes;
    const bool rows = words[0].find('=') == std::string::npos;
    if (rows && (FindObject(words[0]) != nullptr || words.size() == 1))
        return {kWrongUse, "check takes NAME=VALUE, or TABLE INDEX COLUMN=VALUE, not '" + words[0] + "' alone"};
    Failure failure = rows ? ReadChanges(words, &changes) : ReadAssignments("check takes NAME=VALUE", words, &pairs);
    if (failure) return failure;
    for (const RowChange& change : changes) JudgeChange(options, change, judgement);
    if (!rows) JudgeObjects(pairs, judgement);
    return {};
}
}  // namespace

Outcome CommandCheck(const Options& options, const Words& words)
{
    Judgement judgement;
    if (Failure failure = Judge(options, words, &judgement)) return failure;
    Outcome outcome(judgement.data, judgement.text);
    constexpr int kStatus[] = {0, 3, 1};  // by the worst verdict
    outcome.status = kStatus[judgement.worst];
    return outcome;
}
}  // namespace kobd::client
