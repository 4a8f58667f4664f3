// kobctl check: would a set be accepted? Judged by the dictionary; only rows are asked for.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "client/arguments/assignment.h"
#include "client/commands/table_commands.h"
#include "client/dictionary/column_value.h"
#include "client/dictionary/diagnose.h"
#include "client/dictionary/dictionary.h"
#include "daemon/base/result.h"
#include "platform/message.h"

namespace kobd::client
{
namespace
{
constexpr int kSomethingOpen = 3;  // exit status

enum class Verdict
{
    kOk,
    kOpen,  // only the daemon can tell
    kRefused,
};

const char* WordFor(Verdict verdict)
{
    return verdict == Verdict::kOk ? "ok" : verdict == Verdict::kOpen ? "open" : "refused";
}

// Prints verdicts and remembers the worst.
class Judgement
{
public:
    explicit Judgement(const Options& options) : options_(options) {}

    void Say(Verdict verdict, const std::string& item, const std::string& why)
    {
        const char* word = WordFor(verdict);
        worst_ = std::max(worst_, verdict);
        if (options_.json)
            printf("%s{\"item\":%s,\"verdict\":\"%s\",\"why\":%s}", count_ == 0 ? "[" : ",", JsonString(item).c_str(),
                   word, JsonString(why).c_str());
        else
            printf("%s%*s%s%s%s\n", Coloured(ColourOf(verdict), word).c_str(), 9 - static_cast<int>(strlen(word)), "",
                   item.c_str(), why.empty() ? "" : ": ", why.c_str());
        ++count_;
    }

    int Status() const
    {
        if (options_.json) printf("]\n");
        return worst_ == Verdict::kOk ? 0 : worst_ == Verdict::kOpen ? kSomethingOpen : 1;
    }

private:
    static Colour ColourOf(Verdict verdict)
    {
        return verdict == Verdict::kOk ? Colour::kGreen : verdict == Verdict::kOpen ? Colour::kYellow : Colour::kRed;
    }

    const Options& options_;
    Verdict worst_ = Verdict::kOk;
    int count_ = 0;
};

std::string DecidedBy(const char* check)
{
    const char* rule = RuleOf(check);
    return std::string("the daemon decides (") + check + ")" +
           (rule != nullptr ? std::string("; it takes ") + rule : "");
}

void JudgeObjects(const std::vector<Assignment>& pairs, Judgement* judgement)
{
    for (const auto& [name, value] : pairs)
    {
        const std::string item = name + "=" + value;
        const ObjectEntry* object = FindObject(name);
        std::string wrong = WhatIsWrong(name, value);
        if (wrong.starts_with(item + ": ")) wrong.erase(0, item.size() + 2);
        if (!wrong.empty())
            judgement->Say(Verdict::kRefused, item, wrong);
        else if (object->validator != nullptr)
            judgement->Say(Verdict::kOpen, item, DecidedBy(object->validator));
        else
            judgement->Say(Verdict::kOk, item, "");
    }
    const auto bytes = ItemBytes(SetItems(pairs));
    if (!bytes || bytes->size() > kPayloadMax)
        judgement->Say(Verdict::kRefused, "all of them", "these values do not fit one request of 8192 bytes");
}

void JudgeRow(const Options& options, const RowAddress& row, const std::string& item, Judgement* judgement)
{
    std::vector<TableRow> rows;
    std::string error;
    const Response response = DumpRows(options, {row.first}, &rows, &error);
    const bool there =
        std::any_of(rows.begin(), rows.end(), [&](const TableRow& one) { return one.index == row.second; });
    const std::string check = row.first->validator;
    if (!row.first->Has(kSet))
        judgement->Say(Verdict::kRefused, item, Refusal(options, kMethodUnavailable, kSet, {row}));
    else if (response.code != 0 || !error.empty())
        judgement->Say(Verdict::kOpen, item,
                       std::string("whether there is such a row is not known: ") +
                           (error.empty() ? ResultText(response.code) : error));
    else if (!there)
        judgement->Say(Verdict::kRefused, item, Refusal(options, kIndexNotFound, kSet, {row}));
    else
        judgement->Say(check.empty() ? Verdict::kOk : Verdict::kOpen, item,
                       check.empty() ? "" : DecidedBy(check.c_str()));
}

// One group TABLE INDEX COLUMN=VALUE... from the word `i` on; `i` moves behind it. 0, or the exit
// status after an error line.
int JudgeGroup(const Options& options, const Words& words, size_t* i, Judgement* judgement)
{
    const TableEntry* table = TableOrFail(options, words[(*i)++]);
    if (table == nullptr) return 1;
    int32_t index = 0;
    if (!IndexOrFail(options, *i < words.size() ? words[(*i)++] : "", &index)) return 2;
    const std::string row = table->name + (" " + std::to_string(index));
    Words group;
    for (; *i < words.size() && FindTable(words[*i]) == nullptr; ++*i) group.push_back(words[*i]);
    std::vector<Assignment> pairs;
    if (!ReadAssignments(options, "check", group, &pairs)) return 2;
    JudgeRow(options, {table, index}, row, judgement);
    for (const auto& [column, value] : pairs)
    {
        int code = 0;
        const std::string item = column + "=" + value;
        std::string wrong = WhatIsWrong(*table, column, value, &code);
        if (wrong.starts_with(item + ": ")) wrong.erase(0, item.size() + 2);
        judgement->Say(wrong.empty() ? Verdict::kOk : Verdict::kRefused, row + " " + item, wrong);
    }
    return 0;
}
}  // namespace

int CommandCheck(const Options& options, const Words& words)
{
    Judgement judgement(options);
    if (words[0].find('=') == std::string::npos)
    {
        for (size_t i = 0; i < words.size();)
            if (const int status = JudgeGroup(options, words, &i, &judgement)) return status;
        return judgement.Status();
    }
    std::vector<Assignment> pairs;
    if (!ReadAssignments(options, "check", words, &pairs)) return 2;
    JudgeObjects(pairs, &judgement);
    return judgement.Status();
}
}  // namespace kobd::client
