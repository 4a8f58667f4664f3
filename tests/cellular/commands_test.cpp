// The commands that the cellular lists run: their order, their exact texts, and that no text from
// outside is ever run.
#include <gtest/gtest.h>

#include "cellular/mirror.h"
#include "cellular/shell_command.h"
#include "tests/cellular/family_functions.h"
#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/recording_shell.h"

namespace kobd::test
{
namespace
{
using Calls = std::vector<std::string>;

class CellularCommands : public testing::TestWithParam<FamilyFunctions>
{
protected:
    void SetUp() override
    {
        ResetPlatform();
        ResetShell();
        GetParam().init();  // empty
        platform.calls.clear();
    }

    // The commands that write a row whose every field holds `quoted`, as it stands in a command.
    static Calls Writes(const std::string& section, const std::string& quoted, const std::string& index)
    {
        const std::string cellular = "system uci set tr069_cellular." + section + ".";
        Calls calls = {cellular + "name='" + GetParam().word + "'"};
        for (const ColumnDef& column : GetParam().layout->columns.subspan(1))
            calls.push_back(cellular + column.name + "='" + quoted + "'");
        calls.push_back(std::string("system uci set ") + GetParam().index_config + "." + section + ".index='" + index +
                        "'");
        calls.push_back("system uci commit tr069_interface");
        return calls;
    }

    static TestRow RowOf(const std::string& text)
    {
        TestRow row(GetParam());
        for (size_t column = 1; column < GetParam().layout->columns.size(); ++column) row.SetText(column, text);
        return row;
    }
};

INSTANTIATE_TEST_SUITE_P(Families, CellularCommands, testing::ValuesIn(kFamilies),
                         [](const auto& one) { return std::string(one.param.word); });

TEST_P(CellularCommands, LoadAsksForEverySectionInTheOrderOfTheListing)
{
    const std::string word = GetParam().word;
    shell.sections = {{"cfg1", word}, {"cfgother", "other"}, {"LAN2", word}};
    shell.options = {{"tr069_interface.cfg1.index", "7"}};
    GetParam().init();

    Calls expected = {"run uci -X show tr069_interface | grep " + word};
    for (const std::string section : {"cfg1", "LAN2"})
    {
        expected.push_back("run expr \"tr069_interface." + section + "=" + word +
                           "\" : \"tr069_interface.\\([0-9a-zA-Z]*\\)=" + word + "\"");
        for (const ColumnDef& column : GetParam().layout->columns.subspan(1))
            expected.push_back("run uci -q get tr069_cellular." + section + "." + column.name);
        expected.push_back("run uci -q get tr069_interface." + section + ".index");
    }
    // The line end behind the listing is one more line, without a section.
    expected.push_back("run expr \"\" : \"tr069_interface.\\([0-9a-zA-Z]*\\)=" + word + "\"");
    EXPECT_EQ(platform.calls, expected);
}

TEST_P(CellularCommands, ANewRowMakesItsSectionAndWritesEveryOption)
{
    TestRow row = RowOf("value");
    ASSERT_EQ(GetParam().set(1, row.Bytes()), 0);
    Calls expected = {std::string("run uci add tr069_interface ") + GetParam().word};
    for (const std::string& write : Writes("cfgnew1", "value", "1")) expected.push_back(write);
    EXPECT_EQ(platform.calls, expected);
    ASSERT_EQ(GetParam().get(1, row.Bytes()), 0);
    EXPECT_EQ(row.SectionName(), "cfgnew1");
}

TEST_P(CellularCommands, AChangedRowIsWrittenToTheSectionItHad)
{
    TestRow row = RowOf("old");
    ASSERT_EQ(GetParam().set(3, row.Bytes()), 0);
    platform.calls.clear();
    TestRow changed = RowOf("new");
    changed.SetSectionName("elsewhere");
    ASSERT_EQ(GetParam().set(3, changed.Bytes()), 0);
    EXPECT_EQ(platform.calls, Writes("cfgnew1", "new", "3"));
    ASSERT_EQ(GetParam().get(3, row.Bytes()), 0);
    EXPECT_EQ(row.SectionName(), "elsewhere") << "the row is replaced whole, its section name too";
}

TEST_P(CellularCommands, ADeletedRowTakesItsSectionAlongAndTheListIsLoadedAgain)
{
    TestRow row = RowOf("x");
    ASSERT_EQ(GetParam().set(1, row.Bytes()), 0);
    platform.calls.clear();
    ASSERT_EQ(GetParam().del(1), 0);
    ASSERT_GE(platform.calls.size(), 3u);
    EXPECT_EQ(platform.calls[0], "system uci delete tr069_interface.cfgnew1");
    EXPECT_EQ(platform.calls[1], "system uci commit tr069_interface");
    EXPECT_EQ(platform.calls[2], std::string("run uci -X show tr069_interface | grep ") + GetParam().word);
    EXPECT_EQ(GetParam().get(1, row.Bytes()), 13);
}

TEST_P(CellularCommands, TextsArriveUnchangedAndAreNeverRun)
{
    const struct
    {
        std::string text;
        std::string quoted;  // between the single quotes of the command
        const char* why;
    } kCases[] = {
        {"'; touch /tmp/x; '", "'\\''; touch /tmp/x; '\\''", "quotes do not end the quoting"},
        {"$(id) `id` \"\\ %s", "$(id) `id` \"\\ %s", "nothing but the single quote is special"},
        {"two\nlines\n", "two\nlines\n", "line ends stay"},
        {std::string(255, '\''), {}, "the longest text there is, four times as long in the command"},
        {std::string(256, 'x'), std::string(255, 'x'), "a field without a zero byte ends where its slot ends"},
    };
    for (const auto& one : kCases)
    {
        SCOPED_TRACE(one.why);
        SetUp();
        TestRow row = RowOf(one.text);
        ASSERT_EQ(GetParam().set(1, row.Bytes()), 0);
        std::string quoted = one.quoted;
        if (quoted.empty())
            for (size_t i = 0; i < one.text.size(); ++i) quoted += "'\\''";
        const Calls calls(platform.calls.begin() + 1, platform.calls.end());
        EXPECT_EQ(calls, Writes("cfgnew1", quoted, "1"));

        GetParam().init();
        ASSERT_EQ(GetParam().next(-1, row.Bytes()), 0);
        for (size_t column = 1; column < GetParam().layout->columns.size(); ++column)
            ASSERT_EQ(row.Text(column), one.text.substr(0, 255));
    }
}

TEST_P(CellularCommands, NamesThatAreNotLettersAndDigitsAreNotUsed)
{
    const std::string word = GetParam().word;
    for (const std::string name : {"", "cfg1;reboot", "a b", "$(id)", "a.b", "../x", "cfg_1"})
    {
        SCOPED_TRACE(name);
        SetUp();
        const OutputCapture output;
        shell.outputs["uci add tr069_interface " + word] = name + "\n";
        TestRow row = RowOf("x");
        EXPECT_EQ(GetParam().set(1, row.Bytes()), 0);
        EXPECT_EQ(platform.calls, Calls{"run uci add tr069_interface " + word});
        EXPECT_NE(output.Text().find("no configuration section"), std::string::npos);
        platform.calls.clear();
        EXPECT_EQ(GetParam().save(name.c_str(), row.Bytes(), kSaveDelete), 0);
        EXPECT_EQ(platform.calls[0], "system uci commit tr069_interface");
    }
}

TEST_P(CellularCommands, NothingInAListingIsRun)
{
    const std::string word = GetParam().word;
    shell.outputs["uci -X show tr069_interface | grep " + word] =
        "tr069_interface.x.note='$(id)`id`\"; id \\ " + word + "'\n";
    GetParam().init();
    EXPECT_EQ(platform.calls.back(), "run expr \"tr069_interface.x.note='\\$(id)\\`id\\`\\\"; id \\\\ " + word +
                                         "'\" : \"tr069_interface.\\([0-9a-zA-Z]*\\)=" + word + "\"");
    EXPECT_EQ(platform.calls.size(), 2u) << "a line without a section name ends the load";
}

TEST_P(CellularCommands, AnUnknownSaveModeDoesNothing)
{
    TestRow row(GetParam());
    for (const int mode : {-1, 3, 256}) EXPECT_EQ(GetParam().save("cfg1", row.Bytes(), mode), 1);
    EXPECT_TRUE(platform.calls.empty());
}

TEST(ShellCommandTest, ACommandThatDoesNotFitIsNoCommand)
{
    EXPECT_EQ(std::string(ShellCommand(std::string(4095, 'x')).Text()).size(), 4095u);
    EXPECT_EQ(ShellCommand(std::string(4096, 'x')).Text(), nullptr);
    EXPECT_EQ(ShellCommand("a").Add(std::string(4095, 'x')).Add("b").Text(), nullptr) << "nor its beginning and end";
    EXPECT_EQ(ShellCommand("'").AddSingleQuoted(std::string(1024, '\'')).Text(), nullptr);
}
}  // namespace
}  // namespace kobd::test
