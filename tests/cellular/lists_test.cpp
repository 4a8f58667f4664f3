// What the cellular lists answer: rows, indexes, limits and failures.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "cellular/operations.h"
#include "dictionary/name_index.h"
#include "objects/handlers.h"
#include "tests/cellular/family_functions.h"
#include "tests/failing_memory.h"
#include "tests/process_setup.h"
#include "tests/recording_shell.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
constexpr int kMalloc = 7;
constexpr int kNoIndex = 13;
constexpr int kFull = 15;

class CellularLists : public testing::TestWithParam<FamilyFunctions>
{
protected:
    void SetUp() override
    {
        ResetPlatform();
        ResetShell();
        memory_left = -1;
    }
    void TearDown() override { memory_left = -1; }

    // Sections cfg1, cfg2, ... whose first field holds their number.
    static void Load(int count, const std::map<int, std::string>& indexes = {})
    {
        for (int number = 1; number <= count; ++number)
        {
            const std::string name = "cfg" + std::to_string(number);
            shell.sections.emplace_back(name, GetParam().word);
            shell.options["tr069_cellular." + name + "." + FirstField()] = std::to_string(number);
            if (const auto index = indexes.find(number); index != indexes.end())
                shell.options["tr069_interface." + name + ".index"] = index->second;
        }
        GetParam().init();
    }

    static std::string FirstField() { return GetParam().layout->columns[1].name; }

    // "index=first field" of every row, as next walks them.
    static std::string Rows()
    {
        std::string rows;
        TestRow row(GetParam());
        int32_t previous = -1;
        for (int number = 0; number < 200 && GetParam().next(previous, row.Bytes()) == 0; ++number)
        {
            previous = row.Index();
            rows += (rows.empty() ? "" : " ") + std::to_string(previous) + "=" + row.Text(1);
        }
        return rows;
    }

    static int Set(int32_t index, const std::string& text = "new")
    {
        TestRow row(GetParam());
        row.SetText(1, text);
        return GetParam().set(index, row.Bytes());
    }

    static int32_t AddedIndex()
    {
        int32_t index = -99;
        EXPECT_EQ(GetParam().add(&index), 0);
        return index;
    }
};

INSTANTIATE_TEST_SUITE_P(Families, CellularLists, testing::ValuesIn(kFamilies),
                         [](const auto& one) { return std::string(one.param.word); });

TEST_P(CellularLists, IndexesComeFromTheConfigurationOrAreNumbered)
{
    const struct
    {
        std::map<int, std::string> indexes;
        const char* rows;
        int32_t added;
        const char* why;
    } kCases[] = {
        {{}, "1=1 2=2 3=3", 4, "numbered in listing order"},
        {{{1, "7"}, {2, "3"}}, "7=1 3=2 8=3", 9, "one without an index is numbered above the highest"},
        {{{2, "5"}}, "1=1 5=2 6=3", 7, "the highest index so far counts"},
        {{{1, "12abc"}, {2, "abc"}}, "12=1 0=2 13=3", 14, "leading digits count, none are 0"},
        {{{1, "1234567891"}}, "123456789=1 123456790=2 123456791=3", 123456792, "nine characters are read"},
    };
    for (const auto& one : kCases)
    {
        SCOPED_TRACE(one.why);
        SetUp();
        Load(3, one.indexes);
        EXPECT_EQ(Rows(), one.rows);
        EXPECT_EQ(AddedIndex(), one.added);
    }
}

TEST_P(CellularLists, NegativeIndexesAreKeptAndCountAsVeryLarge)
{
    Load(2, {{1, "-5"}});
    EXPECT_EQ(Rows(), "-5=1 -4=2");
    EXPECT_EQ(Set(-5), kNoIndex);
}

TEST_P(CellularLists, EveryOperationOnAnEmptyListSaysSo)
{
    Load(0);
    TestRow row(GetParam());
    EXPECT_EQ(GetParam().next(-1, row.Bytes()), kNoIndex);
    EXPECT_EQ(GetParam().next(1, row.Bytes()), kNoIndex);
    EXPECT_EQ(GetParam().get(1, row.Bytes()), kNoIndex);
    EXPECT_EQ(GetParam().del(1), kNoIndex);
    EXPECT_EQ(Set(0), kNoIndex) << "0 is not above the highest index of an empty list";
    EXPECT_EQ(AddedIndex(), 1);
}

TEST_P(CellularLists, ARowComesIntoBeingWithTheSetAfterTheAdd)
{
    Load(3);
    EXPECT_EQ(AddedIndex(), 4);
    EXPECT_EQ(AddedIndex(), 4) << "add reserves nothing";
    EXPECT_EQ(Set(4), 0);
    EXPECT_EQ(Rows(), "1=1 2=2 3=3 4=new");
    EXPECT_EQ(Set(9), 0) << "any index above the highest makes a row";
    EXPECT_EQ(AddedIndex(), 10);
    TestRow row(GetParam());
    EXPECT_EQ(GetParam().next(9, row.Bytes()), kNoIndex);
    EXPECT_EQ(GetParam().next(5, row.Bytes()), kNoIndex);
}

TEST_P(CellularLists, IndexesThatMakeNoRowAreRefusedAndChangeNothing)
{
    Load(3, {{1, "1"}, {2, "3"}, {3, "5"}});
    platform.calls.clear();
    for (const int32_t index : {2, 4, 0, -1, INT_MIN}) EXPECT_EQ(Set(index), kNoIndex) << index;
    for (const int32_t index : {2, 0, -1, 6}) EXPECT_EQ(GetParam().del(index), kNoIndex) << index;
    EXPECT_TRUE(platform.calls.empty());
    EXPECT_EQ(Rows(), "1=1 3=2 5=3");
}

TEST_P(CellularLists, NoIndexIsLeftAboveTheLargestNumber)
{
    Load(1);
    ASSERT_EQ(Set(INT_MAX), 0);
    int32_t index = -99;
    EXPECT_EQ(GetParam().add(&index), kFull);
    EXPECT_EQ(index, -99);
}

TEST_P(CellularLists, AListIsFullWithSixtyFourRowsAndLoadsMore)
{
    for (const auto& [count, rows_left] : {std::pair(63, 1), std::pair(64, 0), std::pair(65, 0)})
    {
        SCOPED_TRACE(count);
        SetUp();
        Load(count);
        EXPECT_EQ(platform.calls.size(), 2 + static_cast<size_t>(count) * (GetParam().layout->columns.size() + 1))
            << "a command a value, one a name and one an index";
        TestRow row(GetParam());
        ASSERT_EQ(GetParam().get(count, row.Bytes()), 0);
        EXPECT_EQ(row.Text(1), std::to_string(count));
        int32_t index = 0;
        EXPECT_EQ(GetParam().add(&index), rows_left != 0 ? 0 : kFull);
        EXPECT_EQ(Set(count + 1), rows_left != 0 ? 0 : kNoIndex);
        EXPECT_EQ(Set(1, "changed"), 0) << "a row that is there can be changed";
    }
}

TEST_P(CellularLists, AListingThatIsCutLoadsTheWholeLinesAndSaysSo)
{
    const OutputCapture output;
    std::string listing;
    const std::string line = "tr069_interface." + std::string(60, 'n');
    while (listing.size() < 4095) listing += line + std::to_string(listing.size()) + "=" + GetParam().word + "\n";
    shell.outputs[std::string("uci -X show tr069_interface | grep ") + GetParam().word] = listing;
    GetParam().init();
    const std::string cut = listing.substr(0, 4095);
    const auto whole = std::count(cut.begin(), cut.end(), '\n');
    TestRow row(GetParam());
    EXPECT_EQ(GetParam().get(static_cast<int32_t>(whole), row.Bytes()), 0);
    EXPECT_EQ(GetParam().get(static_cast<int32_t>(whole) + 1, row.Bytes()), kNoIndex);
    EXPECT_NE(output.Text().find("more sections than fit"), std::string::npos);
}

TEST_P(CellularLists, ALoadWithoutMemoryKeepsWhatItHas)
{
    Load(3);
    const OutputCapture output;
    memory_left = 2;
    GetParam().init();
    EXPECT_EQ(Rows(), "1=1 2=2");
    const std::string text = output.Text();
    EXPECT_NE(text.find(std::string(GetParam().word) + "ListInit["), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("can not malloc buffer")) << text;
}

TEST_P(CellularLists, ASetWithoutMemoryChangesNothing)
{
    Load(2);
    platform.calls.clear();
    memory_left = 0;
    EXPECT_EQ(Set(3), kMalloc);
    memory_left = -1;
    EXPECT_TRUE(platform.calls.empty());
    EXPECT_EQ(Rows(), "1=1 2=2");
    EXPECT_EQ(AddedIndex(), 3);
}

TEST_P(CellularLists, FamiliesAreIndependent)
{
    Load(2);
    platform.calls.clear();
    ASSERT_EQ(GetParam().del(1), 0);
    const std::vector<std::string> listings = platform.Calls("run uci -X show");
    ASSERT_EQ(listings.size(), 1u);
    EXPECT_TRUE(listings[0].ends_with(std::string(" ") + GetParam().word));
    for (const std::string& call : platform.Calls("run expr")) EXPECT_NE(call.find(GetParam().word), std::string::npos);
}

TEST(CellularList, IsLoadedOnceByItsFirstOperation)
{
    ResetPlatform();
    ResetShell();
    shell.sections = {{"cfg1", "cellularusim"}};
    const std::vector<void (*)(CellularList&)> operations = {
        [](CellularList& list)
        {
            int32_t index = 0;
            EXPECT_EQ(CellularAdd(list, &index), 0);
            EXPECT_EQ(index, 2);
        },
        [](CellularList& list) { EXPECT_EQ(CellularDel(list, 2), kNoIndex); },
        [](CellularList& list)
        {
            char row[1800];
            EXPECT_EQ(CellularGet(list, 1, row), 0);
        },
        [](CellularList& list) { EXPECT_EQ(CellularSet(list, 0, ""), kNoIndex); },
        [](CellularList& list)
        {
            char row[1800];
            EXPECT_EQ(CellularNext(list, -1, row), 0);
        },
    };
    for (const auto operation : operations)
    {
        CellularList list{kUsimFamily};
        cellularListFree(&list);  // of a list that was never used
        platform.calls.clear();
        operation(list);
        operation(list);
        EXPECT_EQ(platform.Calls("run uci -X show").size(), 1u);
        cellularListFree(&list);
    }
}

TEST(CellularSummary, ObjectsReadAndWriteTheConfigurationStore)
{
    NameIndexBuild();
    ResetPlatform();
    platform.config = {{"cellular.roaming.enable", "1"},
                       {"cellular.roaming.status", "Elsewhere"},
                       {"cellular.interfacenumber", "3"},
                       {"cellular.accesspointnumber", "4"}};
    const auto get = [](const char* object)
    {
        const Answer answer = Ask(ReqObjGet, Name(object));
        return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
    };
    EXPECT_EQ(get("CellularRoamingEnabled"), "1");
    EXPECT_EQ(get("RoamingStatus"), "Elsewhere") << "its choices are never applied";
    EXPECT_EQ(get("InterfaceNumberOfEntries"), "3");
    EXPECT_EQ(get("AccessPointNumberOfEntries"), "") << "the earlier object of that name";
    EXPECT_EQ(Ask(ReqObjSet, Pair("CellularRoamingEnabled", "0")).result, 0);
    EXPECT_EQ(platform.config["cellular.roaming.enable"], "0");
    char value[2048];
    EXPECT_EQ(cellularAccessPointNumberGet(value), 0);
    EXPECT_STREQ(value, "4");
    platform.config.clear();
    EXPECT_EQ(cellularRoamingStatusGet(value), 0) << "whatever the store answers";
    EXPECT_STREQ(value, "");
}
}  // namespace
}  // namespace kobd::test
