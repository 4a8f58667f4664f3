// The four cellular lists: their rows, indexes, limits and failures; the commands that they run, their order
// and exact texts, and that no text from outside is ever run.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <span>

#include "cellular/cellular_lists.h"
#include "cellular/mirror.h"
#include "cellular/operations.h"
#include "cellular/shell_command.h"
#include "dictionary/name_index.h"
#include "dictionary/row_field.h"
#include "objects/handlers.h"
#include "tests/failing_memory.h"
#include "tests/recording_shell.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
constexpr int kMalloc = 7;
constexpr int kNoIndex = 13;
constexpr size_t kSlot = 256;  // bytes of a text

struct Family
{
    std::string word;
    const char* table;
    std::string index_config;
    void (*init)();
    int (*save)(const char*, void*, int);
};

#define FUNCTIONS(stem) stem##Init, stem##Save
const Family kFamilies[] = {
    {"cellularinterface", "CellularInterfaceTable", "tr069_cellular", FUNCTIONS(cellularinterfaceList)},
    {"cellularusim", "CellularUSIMTable", "tr069_interface", FUNCTIONS(cellularusimList)},
    {"cellularstats", "CellularStatsTable", "tr069_interface", FUNCTIONS(cellularstatsList)},
    {"cellularaccesspoint", "cellularaccesspointTable", "tr069_interface", FUNCTIONS(cellularaccesspointList)},
};
#undef FUNCTIONS

void PrintTo(const Family& family, std::ostream* out) { *out << family.word; }

class Cellular : public testing::TestWithParam<Family>
{
protected:
    void SetUp() override
    {
        NameIndexBuild();
        Begin();
    }

    // An empty list, no calls.
    void Begin()
    {
        ResetPlatform();
        ResetShell();
        GetParam().init();
        platform.calls.clear();
    }

    const TableDef& List() const { return Table(GetParam().table); }
    // Without pIndex.
    std::span<const ColumnDef> Columns() const { return std::span(List().columns, List().column_count).subspan(1); }

    // Sections cfg1, cfg2, ... whose first field holds their number.
    void Load(int count, const std::map<int, std::string>& indexes = {})
    {
        for (int number = 1; number <= count; ++number)
        {
            const std::string name = "cfg" + std::to_string(number);
            shell.sections.emplace_back(name, GetParam().word);
            shell.options["tr069_cellular." + name + "." + Columns()[0].name] = std::to_string(number);
            if (const auto index = indexes.find(number); index != indexes.end())
                shell.options["tr069_interface." + name + ".index"] = index->second;
        }
        GetParam().init();
    }

    // "index=first field" of every row, as next walks them.
    std::string Rows() const
    {
        std::string rows, row(List().row_size, '\0');
        int32_t previous = -1;
        for (int number = 0; number < 200 && List().ops->next(previous, row.data()) == 0; ++number)
        {
            previous = RowIndex(row.data());
            rows += (rows.empty() ? "" : " ") + std::to_string(previous) + "=" + FieldOf(row, Columns()[0]);
        }
        return rows;
    }

    // A row whose every field begins with the text, which may fill its slot; other bytes are zero.
    std::string RowOf(const std::string& text, const std::string& section = "") const
    {
        std::string row(List().row_size, '\0');
        for (const ColumnDef& column : Columns()) text.copy(&row[column.offset], kSlot);
        section.copy(&row[row.size() - kSlot], kSlot);
        return row;
    }

    int Set(int32_t index, const std::string& text = "new") const { return List().ops->set(index, RowOf(text).data()); }
    // The row, or the code.
    std::string Get(int32_t index) const
    {
        std::string row(List().row_size, '\0');
        const int code = List().ops->get(index, row.data());
        return code == 0 ? row : "code " + std::to_string(code);
    }
    static std::string SectionOf(const std::string& row) { return row.size() > kSlot ? &row[row.size() - kSlot] : row; }

    // The index that a new row would get, or the code.
    std::string Added() const
    {
        int32_t index = -99;
        const int code = List().ops->add(&index);
        EXPECT_TRUE(code == 0 || index == -99);
        return code == 0 ? std::to_string(index) : "code " + std::to_string(code);
    }

    // The commands that write a row whose every field holds `quoted`, as it stands in a command.
    Lines Writes(const std::string& section, const std::string& quoted, const std::string& index) const
    {
        const std::string cellular = "system uci set tr069_cellular." + section + ".";
        Lines calls = {cellular + "name='" + GetParam().word + "'"};
        for (const ColumnDef& column : Columns()) calls.push_back(cellular + column.name + "='" + quoted + "'");
        calls.push_back("system uci set " + GetParam().index_config + "." + section + ".index='" + index + "'");
        calls.push_back("system uci commit tr069_interface");
        return calls;
    }

    // The commands that load these sections. The line end behind the listing is one more line, without a section.
    Lines Loads(const Lines& sections) const
    {
        const std::string word = GetParam().word;
        const std::string pattern = "\" : \"tr069_interface.\\([0-9a-zA-Z]*\\)=" + word + "\"";
        Lines calls = {"run uci -X show tr069_interface | grep " + word};
        for (const std::string& section : sections)
        {
            calls.push_back("run expr \"tr069_interface." + section + "=" + word + pattern);
            for (const ColumnDef& column : Columns())
                calls.push_back("run uci -q get tr069_cellular." + section + "." + column.name);
            calls.push_back("run uci -q get tr069_interface." + section + ".index");
        }
        calls.push_back("run expr \"" + pattern);
        return calls;
    }
};

INSTANTIATE_TEST_SUITE_P(Families, Cellular, testing::ValuesIn(kFamilies),
                         [](const auto& one) { return one.param.word; });

TEST_P(Cellular, IndexesComeFromTheConfigurationOrAreNumbered)
{
    const struct
    {
        std::map<int, std::string> indexes;
        const char* rows;
        const char* added;
        const char* why;
    } kCases[] = {
        {{}, "1=1 2=2 3=3", "4", "numbered in listing order"},
        {{{1, "7"}, {2, "3"}}, "7=1 3=2 8=3", "9", "one without an index is numbered above the highest"},
        {{{2, "5"}}, "1=1 5=2 6=3", "7", "the highest index so far counts"},
        {{{1, "12abc"}, {2, "abc"}}, "12=1 0=2 13=3", "14", "leading digits count, none are 0"},
        {{{1, "1234567891"}}, "123456789=1 123456790=2 123456791=3", "123456792", "nine characters are read"},
        {{{1, "-5"}}, "-5=1 -4=2 -3=3", "-2", "a negative one is kept and counts as very large"},
    };
    for (const auto& one : kCases)
    {
        Begin();
        Load(3, one.indexes);
        EXPECT_EQ(Rows(), one.rows) << one.why;
        EXPECT_EQ(Added(), one.added) << one.why;
        EXPECT_EQ(Set(-5), kNoIndex) << one.why;
    }
}

TEST_P(Cellular, ARowComesIntoBeingWithTheSetAfterTheAdd)
{
    EXPECT_EQ(Rows(), "");
    EXPECT_EQ(Get(1), "code 13");
    EXPECT_EQ(List().ops->del(1), kNoIndex);
    EXPECT_EQ(Set(0), kNoIndex) << "0 is not above the highest index of an empty list";
    EXPECT_EQ(Added(), "1");
    EXPECT_EQ(Added(), "1") << "add reserves nothing";
    EXPECT_EQ(Set(1), 0);
    EXPECT_EQ(Set(9), 0) << "any index above the highest makes a row";
    EXPECT_EQ(Rows(), "1=new 9=new");
    EXPECT_EQ(Added(), "10");
    std::string row(List().row_size, '\0');
    EXPECT_EQ(List().ops->next(9, row.data()), kNoIndex);
    EXPECT_EQ(List().ops->next(5, row.data()), kNoIndex);
    EXPECT_EQ(Set(INT_MAX), 0);
    EXPECT_EQ(Added(), "code 15") << "no index is left above the largest number";
}

TEST_P(Cellular, IndexesThatMakeNoRowAreRefusedAndChangeNothing)
{
    Load(3, {{1, "1"}, {2, "3"}, {3, "5"}});
    platform.calls.clear();
    for (const int32_t index : {2, 4, 0, -1, INT_MIN}) EXPECT_EQ(Set(index), kNoIndex) << index;
    for (const int32_t index : {2, 0, -1, 6}) EXPECT_EQ(List().ops->del(index), kNoIndex) << index;
    for (const int mode : {-1, 3, 256}) EXPECT_EQ(GetParam().save("cfg1", RowOf("").data(), mode), 1) << "no such mode";
    {
        const MemoryLeft none(0);
        EXPECT_EQ(Set(6), kMalloc);
    }
    EXPECT_TRUE(platform.calls.empty());
    EXPECT_EQ(Rows(), "1=1 3=2 5=3");
    EXPECT_EQ(Added(), "6");
}

TEST_P(Cellular, AListIsFullWithSixtyFourRowsAndLoadsMore)
{
    for (const int count : {63, 64, 65})
    {
        Begin();
        Load(count);
        const std::string row = Get(count);
        ASSERT_EQ(row.size(), List().row_size) << row;
        EXPECT_EQ(FieldOf(row, Columns()[0]), std::to_string(count));
        EXPECT_EQ(Added(), count < 64 ? "64" : "code 15");
        EXPECT_EQ(Set(count + 1), count < 64 ? 0 : kNoIndex);
        EXPECT_EQ(Set(1, "changed"), 0) << "a row that is there can be changed";
    }
}

TEST_P(Cellular, ALoadThatEndsEarlyKeepsWhatItHasAndSaysSo)
{
    const OutputCapture output;
    std::string listing;
    const std::string line = "tr069_interface." + std::string(60, 'n');
    while (listing.size() < 4095) listing += line + std::to_string(listing.size()) + "=" + GetParam().word + "\n";
    shell.outputs["uci -X show tr069_interface | grep " + GetParam().word] = listing;
    GetParam().init();
    const std::string cut = listing.substr(0, 4095);
    const auto whole = static_cast<int32_t>(std::count(cut.begin(), cut.end(), '\n'));
    EXPECT_EQ(Get(whole).size(), List().row_size);
    EXPECT_EQ(Get(whole + 1), "code 13") << "its line is cut";
    EXPECT_NE(output.Text().find("more sections than fit"), std::string::npos);

    shell.outputs.clear();
    const MemoryLeft two(2);
    Load(3);
    EXPECT_EQ(Rows(), "1=1 2=2");
    const std::string text = output.Text();
    EXPECT_NE(text.find(GetParam().word + "ListInit["), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("can not malloc buffer")) << text;
}

TEST_P(Cellular, CommandsOfEveryOperation)
{
    shell.sections = {{"cfg1", GetParam().word}, {"cfgother", "other"}, {"LAN2", GetParam().word}};
    shell.options = {{"tr069_interface.cfg1.index", "7"}};
    GetParam().init();
    EXPECT_EQ(platform.calls, Loads({"cfg1", "LAN2"})) << "sections in the order of the listing";

    platform.calls.clear();
    EXPECT_EQ(Set(9, "value"), 0);
    Lines expected = Writes("cfgnew1", "value", "9");
    expected.insert(expected.begin(), "run uci add tr069_interface " + GetParam().word);
    EXPECT_EQ(platform.calls, expected) << "a new row makes its section and writes every option";
    EXPECT_EQ(SectionOf(Get(9)), "cfgnew1");

    platform.calls.clear();
    EXPECT_EQ(List().ops->set(9, RowOf("new", "elsewhere").data()), 0);
    EXPECT_EQ(platform.calls, Writes("cfgnew1", "new", "9")) << "a changed row is written to the section it had";
    EXPECT_EQ(SectionOf(Get(9)), "elsewhere") << "the row is replaced whole, its section name too";

    platform.calls.clear();
    EXPECT_EQ(List().ops->del(7), 0);
    expected = Loads({"LAN2", "cfgnew1"});
    expected.insert(expected.begin(), {"system uci delete tr069_interface.cfg1", "system uci commit tr069_interface"});
    EXPECT_EQ(platform.calls, expected) << "a deleted row takes its section along and the list is loaded again";
    EXPECT_EQ(Get(7), "code 13");
}

TEST_P(Cellular, TextsArriveUnchangedAndAreNeverRun)
{
    std::string quotes;
    for (int i = 0; i < 255; ++i) quotes += "'\\''";
    const struct
    {
        std::string text;
        std::string quoted;  // between the single quotes of the command
        const char* why;
    } kCases[] = {
        {"'; touch /tmp/x; '", "'\\''; touch /tmp/x; '\\''", "quotes do not end the quoting"},
        {"$(id) `id` \"\\ %s", "$(id) `id` \"\\ %s", "nothing but the single quote is special"},
        {"two\nlines\n", "two\nlines\n", "line ends stay"},
        {std::string(255, '\''), quotes, "the longest text there is, four times as long in the command"},
        {std::string(256, 'x'), std::string(255, 'x'), "a field without a zero byte ends where its slot ends"},
    };
    for (const auto& one : kCases)
    {
        Begin();
        EXPECT_EQ(Set(1, one.text), 0);
        EXPECT_EQ(Lines(platform.calls.begin() + 1, platform.calls.end()), Writes("cfgnew1", one.quoted, "1"))
            << one.why;
        GetParam().init();
        const std::string row = Get(1);
        ASSERT_EQ(row.size(), List().row_size) << row;
        for (const ColumnDef& column : Columns()) EXPECT_EQ(FieldOf(row, column), one.text.substr(0, 255)) << one.why;
    }
}

TEST_P(Cellular, NamesAndListingsFromOutsideAreNeverRun)
{
    const std::string word = GetParam().word;
    for (const std::string name : {"", "cfg1;reboot", "a b", "$(id)", "a.b", "../x", "cfg_1"})
    {
        Begin();
        const OutputCapture output;
        shell.outputs["uci add tr069_interface " + word] = name + "\n";
        EXPECT_EQ(Set(1), 0) << name;
        EXPECT_EQ(platform.calls, Lines{"run uci add tr069_interface " + word}) << name;
        EXPECT_NE(output.Text().find("no configuration section"), std::string::npos) << name;
        platform.calls.clear();
        EXPECT_EQ(GetParam().save(name.c_str(), RowOf("x").data(), kSaveDelete), 0) << name;
        EXPECT_EQ(platform.calls[0], "system uci commit tr069_interface") << name;
    }
    Begin();
    shell.outputs["uci -X show tr069_interface | grep " + word] = "tr069_interface.x.note='$(id)`id`\"; id \\ " + word;
    GetParam().init();
    EXPECT_EQ(platform.calls.back(), "run expr \"tr069_interface.x.note='\\$(id)\\`id\\`\\\"; id \\\\ " + word +
                                         "\" : \"tr069_interface.\\([0-9a-zA-Z]*\\)=" + word + "\"");
    EXPECT_EQ(platform.calls.size(), 2u) << "a line without a section name ends the load";
}

TEST(ShellCommandTest, ACommandThatDoesNotFitIsNoCommand)
{
    EXPECT_EQ(std::string(ShellCommand(std::string(4095, 'x')).Text()).size(), 4095u);
    EXPECT_EQ(ShellCommand(std::string(4096, 'x')).Text(), nullptr);
    EXPECT_EQ(ShellCommand("a").Add(std::string(4095, 'x')).Add("b").Text(), nullptr) << "nor its beginning and end";
    EXPECT_EQ(ShellCommand("'").AddSingleQuoted(std::string(1024, '\'')).Text(), nullptr);
}

TEST(CellularList, IsLoadedOnceByItsFirstOperation)
{
    ResetPlatform();
    ResetShell();
    shell.sections = {{"cfg1", "cellularusim"}};
    alignas(int32_t) static char row[1800];
    int (*const kOperations[])(CellularList&) = {
        [](CellularList& list) { return CellularAdd(list, reinterpret_cast<int32_t*>(row)); },
        [](CellularList& list) { return CellularDel(list, 2) - kNoIndex; },
        [](CellularList& list) { return CellularGet(list, 1, row); },
        [](CellularList& list) { return CellularSet(list, 0, "") - kNoIndex; },
        [](CellularList& list) { return CellularNext(list, -1, row); },
    };
    for (const auto operation : kOperations)
    {
        CellularList list{kUsimFamily};
        cellularListFree(&list);  // of a list that was never used
        platform.calls.clear();
        EXPECT_EQ(operation(list), 0);
        EXPECT_EQ(operation(list), 0);
        EXPECT_EQ(platform.Calls("run uci -X show").size(), 1u);
        cellularListFree(&list);
    }
}

TEST(CellularSummary, ObjectsReadAndWriteTheConfigurationStore)
{
    NameIndexBuild();
    ResetPlatform();
    platform.config = {{"cellular.roaming.status", "Elsewhere"},
                       {"cellular.interfacenumber", "3"},
                       {"cellular.accesspointnumber", "4"}};
    EXPECT_EQ(Ask(ReqObjSet, Pair("CellularRoamingEnabled", "1")).result, 0);
    EXPECT_EQ(Ask(ReqObjGet, Name("CellularRoamingEnabled") + Name("RoamingStatus") + Name("InterfaceNumberOfEntries") +
                                 Name("AccessPointNumberOfEntries"))
                  .texts,
              (Lines{"CellularRoamingEnabled", "1", "RoamingStatus", "Elsewhere", "InterfaceNumberOfEntries", "3",
                     "AccessPointNumberOfEntries", ""}))
        << "choices are never applied; the last name is an earlier object's";
    char value[2048];
    EXPECT_EQ(cellularAccessPointNumberGet(value), 0);
    EXPECT_STREQ(value, "4");
}
}  // namespace
}  // namespace kobd::test
