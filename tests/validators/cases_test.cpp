// Runs the case files: what each check accepts, refuses and writes. tests/validators/case_file.h tells
// what stands in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <type_traits>

#include "dictionary/name_index.h"
#include "dictionary/staged_values.h"
#include "platform/connection.h"
#include "tables/row_codec.h"
#include "tests/recording_platform.h"
#include "tests/validators/all_checks.h"
#include "tests/validators/case_file.h"
#include "tests/validators/judge.h"
#include "tests/validators/row_verdict.h"

namespace kobd::test
{
namespace
{
using Words = std::vector<std::string>;

constexpr std::string_view kPredicates[] = {
    "validIp",       "validIpInput",     "validProtocol",       "validPortFormat",
    "isBroadcastIP", "isLastByteZeroIP", "validNameRestriction"};

// The exported check of that name, when it has this type; else nullptr.
template <typename Function>
Function* Exported(std::string_view wanted)
{
    Function* found = nullptr;
    const auto take = [&](std::string_view name, auto& exported)
    {
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(exported)>, Function>)
            if (name == wanted) found = &exported;
    };
#define EXPORTED(name) take(#name, name);
#include "tests/system/exported_names.def"
#undef EXPORTED
    return found;
}

std::pair<std::string, std::string> Split(const std::string& assignment)
{
    const size_t sign = assignment.find('=');
    return {assignment.substr(0, sign), assignment.substr(sign + 1)};
}

class Runner
{
public:
    void Run(const std::string& path)
    {
        for (const CaseLine& line : ReadCases(path))
        {
            const testing::ScopedTrace trace(path.c_str(), line.number, line.why);
            Do(line);
        }
    }

    ~Runner()
    {
        g_stConfigWANIF.count = 0;
        StagedValuesFree();
    }

private:
    void Do(const CaseLine& line)
    {
        const std::string& command = line.tokens.front().text;
        Words words;
        for (size_t i = 1; i < line.tokens.size(); ++i) words.push_back(line.tokens[i].text);
        if (command == "check") return BeginTexts(words);
        if (command == "row") return BeginRows(words);
        if (command == "accept" || command == "refuse") return Judge(line, command == "accept");
        if (command == "stored") return Store(words);
        if (command == "as") return void(index_ = std::stoi(words[0]));
        if (command == "walk") return row_.ExpectWalk(words.empty() ? nullptr : words[0].c_str());
        if (command == "ends") return Judge(line, {});
        if (command == "raw") return void(raw_ = {std::stoul(words[0]), words[1]});
        if (command == "include") return Run(std::string(KOBD_CASES "/") + words[0]);
        if (command == "profile") return PutRow("ApnConfigTable", std::stoi(words[0]), {Split(words[1])});
        if (command == "interfaces") return void(g_stConfigWANIF.count = std::stoul(words[0]));
        SetState(command, words);
    }

    void Reset()
    {
        ResetRows();
        StagedValuesFree();
        checks_.clear();
        row_ = {};
        index_ = 1;
        raw_ = {};
    }

    void BeginTexts(const Words& names)
    {
        Reset();
        names_ = names;
        for (const std::string& name : names_)
        {
            checks_.push_back({name.c_str(), Exported<int(const char*)>(name)});
            ASSERT_NE(checks_.back().function, nullptr) << "no check " << name;
        }
    }

    void BeginRows(const Words& words)
    {
        Reset();
        names_ = words;
        row_ = {Exported<int(void*)>(words[0]), names_[0].c_str(), names_[1].c_str(), {}};
        ASSERT_NE(row_.validator, nullptr) << "no check " << words[0];
        for (size_t i = 2; i < words.size(); ++i) row_.good.push_back(Split(words[i]));
        EXPECT_EQ(row_.validator(nullptr), kRefuses);
        row_.ExpectNothingBesideFields();
    }

    void Store(const Words& words)
    {
        if (words.empty()) return platform.rows[row_.table].clear();
        Fields changes;
        for (size_t i = 1; i < words.size(); ++i) changes.push_back(Split(words[i]));
        const int32_t index = std::stoi(words[0]);
        platform.rows[row_.table][index] = row_.Row(index, changes);
    }

    void SetState(const std::string& command, const Words& words)
    {
        if (command == "stage") StagedValuesFree();
        for (const std::string& word : words)
        {
            const auto [name, text] = Split(word);
            if (command == "value")
                platform.values[name] = text;
            else if (command == "nvram")
                platform.nvram[name] = text;
            else if (command == "stage")
                ASSERT_EQ(StageValue(*NameLookup(name).object, text), 0);
            else
                FAIL() << "no command " << command;
        }
    }

    // One line of values: their codes, unless it tells only how the log ends; the lines that are
    // written, when it tells them; what the check changes in the row.
    void Judge(const CaseLine& line, std::optional<bool> accept) const
    {
        std::vector<Words> items;
        std::optional<Words> written;
        Fields changed;
        char sign = 0;
        for (size_t i = 1; i < line.tokens.size(); ++i)
        {
            const CaseToken& token = line.tokens[i];
            if (token.sign)
                sign = token.text[0];
            else if (sign == '>')
                changed.push_back(Split(token.text));
            else if (sign == ':')
                written->push_back(token.text);
            else if (sign == '+')
                items.back().push_back(token.text), sign = 0;
            else
                items.push_back({token.text});
            if (token.sign && sign == ':') written.emplace();
        }
        if (row_.validator != nullptr)
            JudgeRows(items, accept, written, changed);
        else
            JudgeTexts(items, accept, written);
    }

    void JudgeTexts(const std::vector<Words>& items, std::optional<bool> accept,
                    const std::optional<Words>& written) const
    {
        ASSERT_FALSE(items.empty()) << "no value";
        for (const Check& check : checks_)
            for (const Words& item : items)
            {
                const std::string verdict = test::Judge(check, item[0]);
                std::string expected;
                if (accept) expected = IsPredicate(check.name) ? std::to_string(*accept) : *accept ? "0" : "2";
                for (const std::string& one : written.value_or(Words())) expected += "|" + one;
                const bool right = !accept   ? verdict.ends_with(expected)
                                   : written ? verdict == expected
                                             : verdict.starts_with(expected);
                EXPECT_TRUE(right) << check.name << ": " << item[0].substr(0, 80) << "\nanswered " << verdict
                                   << "\nexpected " << expected;
            }
    }

    static bool IsPredicate(std::string_view name)
    {
        return std::find(std::begin(kPredicates), std::end(kPredicates), name) != std::end(kPredicates);
    }

    void JudgeRows(std::vector<Words> items, std::optional<bool> accept, const std::optional<Words>& written,
                   const Fields& changed) const
    {
        if (items.empty()) items.emplace_back();  // the good row itself
        std::string column;
        for (const Words& item : items)
        {
            Fields fields;
            std::string shown = row_.name;
            for (const std::string& word : item)
            {
                const auto [name, text] = Split(word);
                if (!name.empty()) column = name;
                fields.emplace_back(column, text);
                shown += " " + column + "=" + text;
            }
            JudgeRow(fields, shown, accept, written, changed);
        }
    }

    void JudgeRow(const Fields& fields, const std::string& shown, std::optional<bool> accept,
                  const std::optional<Words>& written, const Fields& changed) const
    {
        std::string row = row_.Row(index_, fields);
        row.replace(raw_.first, raw_.second.size(), raw_.second);
        const RowVerdict verdict = row_.Judge(row);
        EXPECT_TRUE(!accept || verdict.code == (*accept ? kTakes : kRefuses)) << shown << " answers " << verdict.code;
        EXPECT_EQ(accept && written ? verdict.own : Words(), accept ? written.value_or(Words()) : Words()) << shown;
        if (!accept)
        {
            const size_t all = verdict.lines.size();
            ASSERT_GE(all, written->size()) << shown;
            EXPECT_EQ(Words(verdict.lines.end() - static_cast<ptrdiff_t>(written->size()), verdict.lines.end()),
                      *written);
        }
        for (const auto& [name, text] : changed)
        {
            const ColumnDef& field = *ColumnOf(Table(row_.table), name);
            EXPECT_EQ(FieldOf(verdict.row, field), text) << shown << " leaves " << name;
            row.replace(field.offset, FieldWidth(field), verdict.row, field.offset, FieldWidth(field));
        }
        EXPECT_TRUE(verdict.row == row) << shown << ": another byte of the row is changed";
    }

    Words names_;
    std::vector<Check> checks_;
    RowCheck row_ = {};
    int32_t index_ = 1;
    std::pair<size_t, std::string> raw_;  // bytes put into every judged row, and where
};

std::vector<std::string> CaseFiles()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(KOBD_CASES))
        if (entry.path().extension() == ".txt") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

class Cases : public testing::TestWithParam<std::string>
{
};

std::string Stem(const testing::TestParamInfo<std::string>& file) { return std::filesystem::path(file.param).stem(); }
}  // namespace

TEST_P(Cases, AreJudgedAsTheFileSays) { Runner().Run(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Checks, Cases, testing::ValuesIn(CaseFiles()), Stem);
}  // namespace kobd::test
