// Runs the case files tests/validators/cases/*.txt: what each check accepts, refuses and writes.
//
//   # a comment
//   check validIpv4                    Cases of these checks follow; the platform is reset.
//   accept 10.0.0.1 1.0.0.1            # why these values are accepted
//   refuse 0.0.0.0 : "a line\n" "b"    Behind ":" the lines that are written, in their order. Without
//                                      ":" the lines are not looked at.
//   ends 1300; : "a line\n"            The log ends with these lines; of rows, with all functions' names.
//   row validMacFilter FwMacFilterTable MAC=00:11:22:33:44:55     A check of rows, and a good row.
//   accept MAC=00-11-22-33-44-55 =AA:BB:CC:DD:EE:FF + MAC_LIST=x   Rows that differ from it: "=" repeats
//                                      the column, "+" changes one more column of the same row.
//   accept MinPort=1 > SrcPort=1       Behind ">" what the check changes in the row, else nothing.
//   stored 3 MAC=AA:BB:CC:DD:EE:FF     A stored row of index 3.
//   as 3                               The index of the judged rows from here on, at first 1.
//   raw 24 aa:bb                       Bytes that are put into every judged row, at this offset.
//   walk "no memory\n"                 The good row against stored rows; what is written without memory.
//   with KEY=TEXT                      What the platform answers, by getter or key of its store, and what
//                                      the request in hand gives to an object. "interfaces" counts WAN
//                                      interfaces, "profile0" enables the first APN or not.
//   accept 1 @ KEY=TEXT                The same, for this line alone.
//   include FILE                       The lines of another file stand here.
//
// A value is a word, or stands between double quotes. \n, \t, \\, \", \{ and \xHH are bytes; {ab*3} is
// ababab, and "#" in it counts: {#;*3} is 1;2;3;
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <type_traits>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "platform/connection.h"
#include "tables/row_codec.h"
#include "tests/recording_platform.h"
#include "tests/validators/all_checks.h"
#include "tests/validators/judge.h"
#include "tests/validators/row_verdict.h"

namespace kobd::test
{
namespace
{
using Words = std::vector<std::string>;

struct CaseToken
{
    std::string text;
    bool sign;  // ":", ">", "+" or "@" by itself and without quotes
};

struct CaseLine
{
    int number;
    std::vector<CaseToken> tokens;  // at least the command
    std::string why;                // behind "#"
};

class Reader
{
public:
    explicit Reader(std::string_view line) : rest_(line) {}

    // The next token of the line; false at its end or at the reason.
    bool Next(CaseToken* token)
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        if (rest_.empty() || rest_.front() == '#') return false;
        *token = {};
        bool quoted = false;
        const std::string_view begin = rest_;
        while (!rest_.empty() && (quoted || rest_.front() != ' '))
        {
            const bool quote = rest_.front() == '"';
            if (quote) rest_.remove_prefix(1);
            quoted = quoted != quote;
            if (!quote) token->text += Piece();
        }
        const std::string_view raw = begin.substr(0, begin.size() - rest_.size());
        token->sign = raw == ":" || raw == ">" || raw == "+" || raw == "@";
        return true;
    }

    std::string Why() const { return std::string(rest_.substr(std::min(rest_.find_first_not_of("# "), rest_.size()))); }

private:
    // One character, escape or repetition.
    std::string Piece()
    {
        const char c = Take();
        if (c == '\\') return Escape();
        return c == '{' ? Repetition() : std::string(1, c);
    }

    std::string Escape()
    {
        const char c = Take();
        if (c == 'n') return "\n";
        if (c == 't') return "\t";
        if (c != 'x') return std::string(1, c);
        const std::string digits = {Take(), Take()};
        return std::string(1, static_cast<char>(strtol(digits.c_str(), nullptr, 16)));
    }

    std::string Repetition()
    {
        std::string part;
        while (rest_.front() != '*' || rest_.substr(1).find_first_not_of("0123456789") != rest_.find('}') - 1)
            part += Piece();
        rest_.remove_prefix(1);
        const int times = atoi(std::string(rest_).c_str());
        rest_.remove_prefix(rest_.find('}') + 1);
        std::string text;
        const size_t counter = part.find('#');
        for (int i = 1; i <= times; ++i)
            text += counter == part.npos ? part : std::string(part).replace(counter, 1, std::to_string(i));
        return text;
    }

    char Take()
    {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    std::string_view rest_;
};

const std::string kCases = "tests/validators/cases/";  // in the folder of the sources

// The lines of the file that hold a command.
std::vector<CaseLine> ReadCases(const std::string& path)
{
    std::vector<CaseLine> lines;
    std::ifstream file(path);
    int number = 0;
    for (std::string text; std::getline(file, text);)
    {
        CaseLine line = {++number, {}, {}};
        Reader reader(text);
        for (CaseToken token; reader.Next(&token);) line.tokens.push_back(token);
        line.why = reader.Why();
        if (!line.tokens.empty()) lines.push_back(line);
    }
    return lines;
}

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
    void Run(const std::string& name)
    {
        const std::vector<CaseLine> lines = ReadCases(SourceFolder() + kCases + name);
        ASSERT_FALSE(lines.empty()) << "cannot read " << kCases << name;
        for (const CaseLine& line : lines)
        {
            const testing::ScopedTrace trace((kCases + name).c_str(), line.number, line.why);
            Do(line);
        }
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
        if (command == "walk") return Walk(words.empty() ? nullptr : words[0].c_str());
        if (command == "ends") return Judge(line, {});
        if (command == "raw") return void(raw_ = {std::stoul(words[0]), words[1]});
        if (command == "include") return Run(words[0]);
        ASSERT_EQ(command, "with");
        for (const std::string& word : words) state_.push_back(Split(word));
    }

    void Reset()
    {
        ResetRows();
        state_.clear();
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
        Fields changes;
        for (size_t i = 1; i < words.size(); ++i) changes.push_back(Split(words[i]));
        const int32_t index = std::stoi(words[0]);
        platform.rows[row_.table][index] = row_.Row(index, changes);
    }

    void Walk(const char* no_memory)
    {
        SetState(state_);
        row_.ExpectWalk(no_memory);
        StagedValuesFree();
    }

    void SetState(const Fields& state)
    {
        for (const auto& [key, text] : state)
            if (key == "interfaces")
                g_stConfigWANIF.count = static_cast<uint32_t>(std::stoul(text));
            else if (key.starts_with("profile"))
                PutRow("ApnConfigTable", key.back() - '0', {{"ApnEnable", text}});
            else if (const ObjDef* object = NameLookup(key.c_str()).object)
                ASSERT_EQ(StageValue(*object, text), 0);
            else
                (key.starts_with("get") || key.ends_with("Get") ? platform.values : platform.nvram)[key] = text;
    }

    // One line of values: their codes, unless it tells only how the log ends; the lines that are
    // written, when it tells them; what the check changes in the row.
    void Judge(const CaseLine& line, std::optional<bool> accept)
    {
        Fields state = state_;
        std::vector<Words> items;
        std::optional<Words> written;
        Fields changed;
        char sign = 0;
        for (size_t i = 1; i < line.tokens.size(); ++i)
        {
            const CaseToken& token = line.tokens[i];
            if (token.sign)
                sign = token.text[0];
            else if (sign == '@')
                state.push_back(Split(token.text));
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
        const RecordingPlatform before = platform;
        SetState(state);
        if (row_.validator != nullptr)
            JudgeRows(items, accept, written, changed);
        else
            JudgeTexts(items, accept, written);
        platform = before;
        StagedValuesFree();
        g_stConfigWANIF.count = 0;
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
    Fields state_;  // of every line
    std::vector<Check> checks_;
    RowCheck row_ = {};
    int32_t index_ = 1;
    std::pair<size_t, std::string> raw_;  // bytes put into every judged row, and where
};

std::vector<std::string> CaseFiles()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(KOBD_SOURCES "/" + kCases))
        if (entry.path().extension() == ".txt") files.push_back(entry.path().filename());
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
