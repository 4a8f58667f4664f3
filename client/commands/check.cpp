// kobctl check: would a set be accepted? Judged by the dictionary; the daemon is asked for rows alone.
#include <algorithm>

#include "client/commands/commands.h"
#include "client/dictionary/column_value.h"
#include "client/dictionary/diagnose.h"
#include "client/dictionary/dictionary.h"
#include "client/output/terminal.h"
#include "client/rows/row_change.h"
#include "client/rows/table_rows.h"
#include "daemon/base/result.h"

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
    void Say(Verdict verdict, const std::string& item, const std::string& why)
    {
        static constexpr const char* kWords[] = {"ok", "open", "refused"};
        static constexpr Colour kColours[] = {Colour::kGreen, Colour::kYellow, Colour::kRed};
        static constexpr size_t kWidth = 9;
        data.push_back({{"item", item}, {"verdict", kWords[verdict]}, {"why", why}});
        text += Coloured(kColours[verdict], kWords[verdict], kWidth) + item + (why.empty() ? "" : ": ") + why + "\n";
        worst = std::max(worst, verdict);
    }

    Json data = Json::array();
    std::string text = {};
    Verdict worst = kOk;
};

std::string DecidedBy(const std::string& check)
{
    const char* rule = RuleOf(check);
    return "the daemon decides (" + check + ")" + (rule != nullptr ? std::string("; it takes ") + rule : "");
}

// What is wrong, without the item that the text begins with.
std::string WithoutItem(std::string wrong, const Assignment& item)
{
    if (wrong.starts_with(item.Text() + ": ")) wrong.erase(0, item.Text().size() + 2);
    return wrong;
}

void JudgeObjects(const Assignments& pairs, Judgement* judgement)
{
    for (const Assignment& pair : pairs)
    {
        const ObjectEntry* object = FindObject(pair.name);
        const std::string wrong = WithoutItem(WhatIsWrong(pair.name, pair.value), pair);
        if (!wrong.empty())
            judgement->Say(kRefused, pair.Text(), wrong);
        else if (object->validator != nullptr)
            judgement->Say(kOpen, pair.Text(), DecidedBy(object->validator));
        else
            judgement->Say(kOk, pair.Text(), "");
    }
    if (!FitsOneRequest(SetItems(pairs)))
        judgement->Say(kRefused, "all of them", "these values do not fit one request of 8192 bytes");
}

// The words of a refusal, without its code.
std::string WhyNot(const Options& options, int code, const RowAddress& row)
{
    std::string what = RefusalOf(options, code, kSet, {row}).what;
    return what.erase(what.size() - CodeText(code).size() - 2);
}

void JudgeRow(const Options& options, const RowAddress& row, Judgement* judgement)
{
    if (!row.table->Has(kSet)) return judgement->Say(kRefused, row.Text(), WhyNot(options, kMethodUnavailable, row));
    std::vector<TableRow> rows;
    const Failure failure = DumpRows(options, "whether there is such a row is not known", {row.table}, &rows);
    if (failure) return judgement->Say(kOpen, row.Text(), failure.what);
    if (std::none_of(rows.begin(), rows.end(), [&](const TableRow& one) { return one.index == row.index; }))
        return judgement->Say(kRefused, row.Text(), WhyNot(options, kIndexNotFound, row));
    const std::string check = row.table->validator;
    judgement->Say(check.empty() ? kOk : kOpen, row.Text(), check.empty() ? "" : DecidedBy(check));
}

// Judges one group TABLE INDEX COLUMN=VALUE... from the word `i` on, and moves `i` behind it.
Failure JudgeGroup(const Options& options, const Words& words, size_t* i, Judgement* judgement)
{
    RowAddress row = {nullptr, 0};
    if (Failure failure = ReadTable(words[(*i)++], &row.table)) return failure;
    if (Failure failure = ReadRowIndex(*i < words.size() ? words[(*i)++] : "", &row.index)) return failure;
    Words group;
    for (; *i < words.size() && FindTable(words[*i]) == nullptr; ++*i) group.push_back(words[*i]);
    Assignments pairs;
    if (Failure failure = ReadAssignments("check takes NAME=VALUE", group, &pairs)) return failure;
    JudgeRow(options, row, judgement);
    for (const Assignment& pair : pairs)
    {
        int code = 0;
        const std::string wrong = WithoutItem(WhatIsWrong(*row.table, pair.name, pair.value, &code), pair);
        judgement->Say(wrong.empty() ? kOk : kRefused, row.Text() + " " + pair.Text(), wrong);
    }
    return {};
}

Failure Judge(const Options& options, const Words& words, Judgement* judgement)
{
    Assignments pairs;
    if (words[0].find('=') != std::string::npos)
    {
        if (Failure failure = ReadAssignments("check takes NAME=VALUE", words, &pairs)) return failure;
        JudgeObjects(pairs, judgement);
    }
    else
        for (size_t i = 0; i < words.size();)
            if (Failure failure = JudgeGroup(options, words, &i, judgement)) return failure;
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
