// Runs the case files tests/validators/cases/*.txt: what each check accepts, refuses and writes.
//
//   # a comment
//   check validIpv4                    Cases of these functions follow; the platform is reset.
//   predicate validIp                  The same; it answers 1 for yes and 0 for no.
//   accept 10.0.0.1 1.0.0.1            # why these values are accepted
//   refuse 0.0.0.0 : "a line\n" "b"    Behind ":" the lines that are written, in their order. Without
//                                      ":" the lines are not looked at.
//   ends 1300; : "a line\n"            The log ends with these lines; of rows, with all functions' lines.
//   gives 2 a + b c + NULL > x y       What a function of several arguments answers for each "a + b", and
//                                      behind ">" what it writes to the other ones.
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
//   accept 1 @ KEY=TEXT @ KEY=TEXT     The same, for this line alone; judged once with each.
//   include FILE                       The lines of another file stand here.
#include <gtest/gtest.h>

#include <span>

#include "dictionary/name_index.h"
#include "dictionary/row_field.h"
#include "dictionary/snapshot.h"
#include "platform/connection.h"
#include "tables/row_codec.h"
#include "tests/case_lines.h"
#include "tests/failing_memory.h"
#include "tests/namespaces.h"
#include "tests/tables/table_rows.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::string kCases = "tests/validators/cases/";  // in the folder of the sources
const Words kTakes = {"0", "1"};                       // of a check, of a predicate
const Words kRefuses = {"2", "0"};

Fields SplitAll(std::span<const CaseToken> tokens)
{
    Fields fields;
    for (const CaseToken& token : tokens) fields.push_back(Split(token.text));
    return fields;
}

// A line that judges: its values, and what is expected of each.
struct Expectation
{
    std::vector<Arguments> values;
    std::optional<std::string> result;
    std::optional<Words> lines;
    bool only_ends = false;  // the log ends with the lines
    Words written;           // or, of a row, "column=text"
};

class Runner
{
public:
    void Run(const std::string& name)
    {
        const std::string path = kCases + name;
        const std::vector<CaseLine> lines = ReadCases(SourceFolder() + path);
        ASSERT_FALSE(lines.empty()) << "cannot read " << path;
        for (const CaseLine& line : lines)
        {
            const testing::ScopedTrace trace(path.c_str(), line.number, line.why);
            Do(line.command, line.tokens);
        }
    }

private:
    void Do(const std::string& command, std::span<const CaseToken> tokens)
    {
        if (command == "check" || command == "predicate" || command == "row") return Begin(command, tokens);
        if (command == "with") return void(state_ = SplitAll(tokens));
        if (command == "as") return void(index_ = std::stoi(tokens[0].text));
        if (command == "raw") return void(raw_ = {std::stoul(tokens[0].text), tokens[1].text});
        if (command == "stored")
            return PutRow(table_->name, std::stoi(tokens[0].text), Row(SplitAll(tokens.subspan(1))));
        if (command == "walk") return Walk(tokens.empty() ? Words() : Words{tokens[0].text});
        ASSERT_TRUE(command == "accept" || command == "refuse" || command == "ends" || command == "gives") << command;
        JudgeLine(command, tokens);
    }

    void Begin(const std::string& command, std::span<const CaseToken> tokens)
    {
        NameIndexBuild();
        ResetPlatform();
        *this = {};
        predicate_ = command == "predicate";
        if (command == "row")
        {
            table_ = &Table(tokens[1].text);
            good_ = SplitAll(tokens.subspan(2));
            tokens = tokens.first(1);
        }
        for (const CaseToken& token : tokens)
        {
            ASSERT_TRUE(ExportedFunctions().contains(token.text)) << "no check " << token.text;
            functions_.push_back(token.text);
            if (ExportedFunctions().at(token.text).check == nullptr && table_ == nullptr) continue;
            EXPECT_EQ(Judge(token.text, {std::nullopt}).result, kRefuses[predicate_]) << "a missing argument";
        }
        if (table_ != nullptr) ExpectNothingBesideFields();
    }

    Fields Row(const Fields& changes) const
    {
        Fields fields = good_;
        fields.insert(fields.end(), changes.begin(), changes.end());
        return fields;
    }

    Verdict JudgeRow(int32_t index, const Fields& changes = {}) const
    {
        return Judge(functions_[0], {RowBytes(*table_, index, Row(changes))});
    }

    // Columns that no zero byte ends: nothing beside them is written. The sanitizers see what is read.
    void ExpectNothingBesideFields() const
    {
        for (const ColumnDef& column : std::span(table_->columns, table_->column_count))
            for (const char c : {'1', 'a', ' ', '-'})
            {
                std::string row = RowBytes(*table_, 1, good_);
                row.replace(column.offset, FieldWidth(column), FieldWidth(column), c);
                const std::string left = Judge(functions_[0], {row}).written[0];
                row.replace(column.offset, FieldWidth(column), left, column.offset, FieldWidth(column));
                EXPECT_EQ(left, row) << column.name << " of " << c;
            }
    }

    void Walk(const Words& without_memory)
    {
        SetState(state_);
        PutRow(table_->name, 1, good_);
        EXPECT_EQ(JudgeRow(1).result, "0") << "a row is no duplicate of itself";
        EXPECT_EQ(JudgeRow(2).result, "2") << "but of another";
        EXPECT_EQ(JudgeRow(-2).result, "2") << "whatever the index is";
        platform.rows[table_->name] = {{7, RowBytes(*table_, 3, good_)}};  // after row 3 comes row 3
        const Verdict endless = JudgeRow(3);
        EXPECT_EQ(endless.result, "2") << "what could not be read may collide";
        EXPECT_EQ(endless.lines.back(), "OtherRows: the stored rows have no end, given up after 4096\n");
        platform.rows.clear();
        const MemoryLeft none(-1, 0);
        const Verdict poor = JudgeRow(1);
        EXPECT_EQ(poor.result, without_memory.empty() ? "0" : "2");
        EXPECT_EQ(poor.own, without_memory == Words{""} ? Words() : without_memory);
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

    void JudgeLine(const std::string& command, std::span<const CaseToken> tokens)
    {
        Expectation expected;
        expected.only_ends = command == "ends";
        if (command == "gives") expected.result = tokens[0].text, tokens = tokens.subspan(1);
        if (command == "accept" || command == "refuse")
            expected.result = (command == "accept" ? kTakes : kRefuses)[predicate_];
        std::vector<Fields> states;
        char sign = 0;
        for (const CaseToken& token : tokens)
        {
            const std::optional<std::string> value = token.missing ? std::nullopt : std::optional(token.text);
            if (token.sign != 0)
                sign = token.sign;
            else if (sign == '@')
                states.back().push_back(Split(token.text));
            else if (sign == '>')
                expected.written.push_back(token.text);
            else if (sign == ':')
                expected.lines->push_back(token.text);
            else if (std::exchange(sign, 0) == '+')
                expected.values.back().push_back(value);
            else
                expected.values.push_back({value});
            if (token.sign == ':') expected.lines.emplace();
            if (token.sign == '@') states.push_back(state_);
        }
        if (expected.values.empty()) expected.values.emplace_back();  // the good row itself
        if (states.empty()) states.push_back(state_);
        for (const Fields& state : states)
        {
            const RecordingPlatform before = platform;
            SetState(state);
            for (const std::string& function : functions_)
                for (const Arguments& value : expected.values) JudgeValue(function, value, expected);
            platform = before;
            StagedValuesFree();
            g_stConfigWANIF.count = 0;
        }
    }

    void JudgeValue(const std::string& function, const Arguments& value, const Expectation& expected)
    {
        std::string shown = function;
        for (const auto& word : value) shown += " " + word.value_or("NULL").substr(0, 80);
        const testing::ScopedTrace trace(__FILE__, __LINE__, shown);
        Arguments arguments = value;
        if (table_ != nullptr)
        {
            arguments = {RowBytes(*table_, index_, Row(FieldsOf(value)))};
            arguments[0]->replace(raw_.first, raw_.second.size(), raw_.second);
        }
        const Verdict verdict = Judge(function, arguments);
        EXPECT_EQ(verdict.result, expected.result.value_or(verdict.result));
        if (table_ == nullptr)
            EXPECT_EQ(verdict.written, expected.written);
        else
            ExpectChanged(*arguments[0], verdict.written[0], expected.written);
        if (!expected.lines) return;
        Words lines = table_ == nullptr || expected.only_ends ? verdict.lines : verdict.own;
        const size_t all = lines.size();
        const size_t wanted = expected.lines->size();
        if (expected.only_ends && all > wanted)
            lines.erase(lines.begin(), lines.end() - static_cast<ptrdiff_t>(wanted));
        EXPECT_EQ(lines, *expected.lines);
    }

    // The columns that a value changes; one without a name is the one before it, of this value or the last.
    Fields FieldsOf(const Arguments& value)
    {
        Fields fields;
        for (const auto& word : value)
        {
            fields.push_back(Split(*word));
            if (fields.back().first.empty()) fields.back().first = column_;
            column_ = fields.back().first;
        }
        return fields;
    }

    void ExpectChanged(std::string row, const std::string& left, const Words& changes) const
    {
        for (const std::string& change : changes)
        {
            const auto& [name, text] = Split(change);
            const ColumnDef& field = *ColumnOf(*table_, name);
            EXPECT_EQ(FieldOf(left, field), text) << name;
            row.replace(field.offset, FieldWidth(field), left, field.offset, FieldWidth(field));
        }
        EXPECT_TRUE(left == row) << "another byte of the row is changed";
    }

    Words functions_;
    bool predicate_ = false;
    Fields state_;                     // of every line
    const TableDef* table_ = nullptr;  // of a check of rows
    Fields good_;
    int32_t index_ = 1;
    std::pair<size_t, std::string> raw_;  // bytes put into every judged row, and where
    std::string column_;                  // named last
};

class Cases : public testing::TestWithParam<std::string>
{
};
}  // namespace

TEST_P(Cases, AreJudgedAsTheFileSays) { Runner().Run(GetParam() + ".txt"); }

INSTANTIATE_TEST_SUITE_P(Checks, Cases, testing::ValuesIn(CaseFiles(kCases)),
                         [](const auto& file) { return file.param; });
}  // namespace kobd::test
