// Changes of rows, and the words for what the daemon did not accept of them.
#include "client/rows/row_change.h"

#include <algorithm>

#include "client/dictionary/column_value.h"
#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
namespace
{
std::vector<RowAddress> RowsOf(const std::vector<RowChange>& changes)
{
    std::vector<RowAddress> rows;
    for (const RowChange& change : changes) rows.push_back(change.row);
    return rows;
}

// The last line that a check of these rows wrote; nullptr when none did.
const LogLine* CheckLine(const std::vector<RowChange>& changes, const std::vector<LogLine>& log)
{
    const auto by_check = [&](const LogLine& line)
    {
        return std::any_of(changes.begin(), changes.end(),
                           [&](const RowChange& change) { return line.function == change.row.first->validator; });
    };
    const auto found = std::find_if(log.rbegin(), log.rend(), by_check);
    return found == log.rend() ? nullptr : &*found;
}

std::string ChangeText(const RowChange& change)
{
    std::string out = change.row.first->name + (" " + std::to_string(change.row.second));
    for (const auto& [column, value] : change.values) out += " " + column + "=" + value;
    return out;
}

// The rows that the check may have refused, all of them when no check said anything.
std::string ChangeTexts(const std::vector<RowChange>& changes, const LogLine* said)
{
    std::vector<std::string> texts;
    for (const RowChange& change : changes)
        if (said == nullptr || said->function == change.row.first->validator) texts.push_back(ChangeText(change));
    std::string out = texts.size() > 1 ? "one of these rows: " : "";
    for (const std::string& text : texts) out += (&text == &texts.front() ? "" : ", ") + text;
    return out;
}
}  // namespace

int AddValue(const Options& options, const std::string& word, RowChange* change)
{
    const size_t equals = word.find('=');
    const std::string column = word.substr(0, equals);
    if (equals == std::string::npos || equals == 0)
    {
        const std::string near = NearestTable(word);
        return WrongUse(options, "'" + word + "' is neither COLUMN=VALUE nor a table" + DidYouMean(near), "table");
    }
    change->values.emplace_back(column, word.substr(equals + 1));
    int code = 0;
    const std::string wrong = WhatIsWrong(*change->row.first, column, change->values.back().second, &code);
    if (wrong.empty()) return 0;
    const std::string row = change->row.second == kNoIndexYet ? "" : " " + std::to_string(change->row.second);
    return FailRequest(options, code, false, change->row.first->name + row + ": " + wrong);
}

int ReadChanges(const Options& options, const Words& words, std::vector<RowChange>* changes)
{
    for (size_t i = 0; i < words.size();)
    {
        RowChange change = {{TableOrFail(options, words[i++]), kNoIndexYet}};
        if (change.row.first == nullptr) return 1;
        const std::string name = change.row.first->name;
        if (!IndexOrFail(options, i < words.size() ? words[i++] : "", &change.row.second)) return 2;
        for (; i < words.size() && FindTable(words[i]) == nullptr; ++i)
            if (const int status = AddValue(options, words[i], &change)) return status;
        if (change.values.empty())
        {
            return WrongUse(options, name + " " + std::to_string(change.row.second) + " needs COLUMN=VALUE", "table");
        }
        changes->push_back(change);
    }
    return 0;
}

Items ChangeItems(const std::vector<RowChange>& changes)
{
    Items items;
    for (const RowChange& change : changes)
    {
        items.emplace_back(kTagTableName, change.row.first->name);
        items.emplace_back(kTagRowIndex, change.row.second);
        for (const auto& [column, value] : change.values)
        {
            items.emplace_back(kTagColumnName, column);
            items.emplace_back(kTagValue, value);
        }
    }
    return items;
}

std::string WhyChangesRefused(const Options& options, int code, const std::vector<RowChange>& changes,
                              const std::vector<LogLine>& log)
{
    const bool all_can_be_set = std::all_of(changes.begin(), changes.end(),
                                            [](const RowChange& change) { return change.row.first->Has(kSet); });
    if (code == kIndexNotFound || !all_can_be_set) return Refusal(options, code, kSet, RowsOf(changes));
    const LogLine* said = CheckLine(changes, log);
    std::string out = ChangeTexts(changes, said);
    const char* check = said != nullptr ? said->function.c_str() : changes.front().row.first->validator;
    if (said != nullptr) out += ": " + said->message + " (" + said->function + ")";
    if (said == nullptr && changes.size() > 1) return out;
    return out + (RuleOf(check) != nullptr ? std::string("; it takes ") + RuleOf(check) : "");
}
}  // namespace kobd::client
