// Lists of rows: one by itself, and the list operations as the table requests call them, through the catalogue.
#include "host/tables/lists.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <set>

#include "host/tables/low_text.h"
#include "tests/host/host_state.h"

namespace kobd::test
{
namespace
{
using Lists = HostState;

constexpr size_t kRowSize = 64;
constexpr size_t kRows = 4;
constexpr int32_t kNone = -99;

int32_t IndexOrNone(const Row* row) { return row == nullptr ? kNone : IndexOf(*row); }

// The list that keeps the rows of the table; nullptr for the daemon's own lists.
List* ListBehind(const TableDef& table)
{
    for (const TableDef& owner : kTables)
        if (owner.ops == table.ops) return FindList(owner.name);
    return nullptr;
}

Block BlockOf(const TableDef& table, int32_t index, char fill)
{
    Block row(table.row_size, fill);
    memcpy(row.data(), &index, sizeof index);
    return row;
}

// Whether the operation answers `result`, or is not there.
template <typename Operation, typename... Arguments>
bool Answers(Operation operation, int result, Arguments... arguments)
{
    return operation == nullptr || operation(arguments...) == result;
}

void ExpectAbsent(const TableDef& table, int32_t index)
{
    Block row(table.row_size, 'x');
    EXPECT_TRUE(Answers(table.ops->get, kIndexNotFound, index, row.data())) << index;
    EXPECT_TRUE(Answers(table.ops->set, kIndexNotFound, index, row.data())) << index;
    EXPECT_TRUE(Answers(table.ops->del, kIndexNotFound, index)) << index;
    EXPECT_TRUE(Answers(table.ops->setPPath, kIndexNotFound, index, "x")) << index;
    EXPECT_EQ(table.ops->next(index, row.data()), kIndexNotFound) << index;
    EXPECT_EQ(row, Block(table.row_size, 'x')) << "the caller's block";
}
}  // namespace

// Beside a set of indexes: whatever is done next may follow whatever was done last.
TEST(RowList, GivesEachIndexOnceAndFindsWhatIsThere)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round)
    {
        RowList list(kRowSize, kRows);
        std::set<int32_t> indexes;
        int32_t last = 0;
        for (int step = 0; step < 40; ++step)
        {
            const auto index = static_cast<int32_t>(random() % 12) - 2;
            const bool is_new = index > last;
            const bool has_room = indexes.size() < kRows && last < INT32_MAX;
            int32_t added = kNone;
            switch (random() % 5)
            {
                case 0:
                    ASSERT_EQ(IndexOrNone(list.Append(index)), is_new ? index : kNone);
                    if (is_new) indexes.insert(last = index);
                    break;
                case 1:
                    ASSERT_EQ(list.Add(&added), has_room ? 0 : kTableFull);
                    ASSERT_EQ(added, has_room ? last + 1 : kNone) << "no index is told of what was not added";
                    if (has_room) indexes.insert(++last);
                    break;
                case 2: ASSERT_EQ(list.Del(index), indexes.erase(index) != 0 ? 0 : kIndexNotFound); break;
                case 3:
                    list.RaiseLastIndex(round % 8 == 0 ? INT32_MAX - 1 : index);
                    last = std::max(last, round % 8 == 0 ? INT32_MAX - 1 : index);
                    break;
                default:
                    const bool is_there = indexes.contains(index);
                    const auto next = index == kBeforeFirst ? indexes.begin() : indexes.upper_bound(index);
                    const bool goes_on = (index == kBeforeFirst || is_there) && next != indexes.end();
                    ASSERT_EQ(IndexOrNone(list.Next(index)), goes_on ? *next : kNone) << "behind " << index;
                    ASSERT_EQ(IndexOrNone(list.Find(index)), is_there ? index : kNone);
            }
            ASSERT_EQ(list.LastIndex(), last);
        }
    }
}

TEST(RowList, AWalkCostsTheSameAtEveryRow)
{
    RowList list(kRowSize, 80000);
    int32_t index = 0;
    while (list.Add(&index) == 0) continue;
    const auto begin = std::chrono::steady_clock::now();
    int rows = 0;
    for (const Row* row = list.Next(kBeforeFirst); row != nullptr; row = list.Next(IndexOf(*row))) ++rows;
    EXPECT_EQ(rows, 80000);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2))
        << "an eternity where each step searches from the start";
}

TEST_F(Lists, EveryTableWorksOnItsOwnListAlone)
{
    int tables = 0;
    for (const TableDef& table : kTables)
    {
        List* list = ListBehind(table);
        if (list == nullptr) continue;
        ++tables;
        SCOPED_TRACE(table.name);
        EXPECT_EQ(list->rows.RowSize(), table.row_size);
        for (const int32_t absent : {-2, 1000000, INT32_MAX, INT32_MIN}) ExpectAbsent(table, absent);
        if (std::string_view(table.name) == "ApnConfigTable") continue;  // nvram keeps a part of its rows, see below
        int32_t index = list->rows.Rows().empty() ? -1 : IndexOf(list->rows.Rows().front());
        const int added = table.ops->add == nullptr ? 0 : table.ops->add(&index);
        EXPECT_EQ(added, added == kTableFull && list->rows.Rows().size() == table.max_rows ? kTableFull : 0);
        if (index == -1) continue;  // nothing in it, and nothing can be

        auto others = EverySingleRow();
        const Block row = BlockOf(table, index, static_cast<char>('A' + tables % 26));
        EXPECT_TRUE(Answers(table.ops->set, 0, index, BlockOf(table, index + 40, row.back()).data()));
        Block got = row;
        EXPECT_TRUE(Answers(table.ops->get, 0, index, got.data()));
        EXPECT_EQ(got == row, table.ops->set != nullptr || table.ops->get == nullptr) << "set, then get";
        const std::vector<Block> walked = Rows(table.name);
        EXPECT_EQ(std::count(walked.begin(), walked.end(), got), table.ops->get != nullptr) << "get, then next";
        EXPECT_TRUE(Answers(table.ops->del, 0, index));
        if (table.ops->del != nullptr) ExpectAbsent(table, index);
        auto now = EverySingleRow();
        others.erase(list->table);
        now.erase(list->table);
        EXPECT_EQ(now, others) << "no other list has changed";
    }
    EXPECT_EQ(tables, 99);
    EXPECT_EQ(ListBehind(Table("PortRedirectTable")), FindList("FwPortForwardTable")) << "two names for one list";
    EXPECT_EQ(ListBehind(Table("ParentalControlTable")), FindList("FwParentControlTable"));
    EXPECT_EQ(RowIndex(Rows("ApnStatusTable")[0].data()), 0) << "the number of the APN less 1";
}

TEST_F(Lists, WhetherAnApnIsEnabledIsTheSameInItsRowAndInNvram)
{
    const auto enabled = []
    {
        const std::vector<Block> rows = Rows("ApnConfigTable");
        for (int32_t apn = 1; apn <= 4; ++apn)
            EXPECT_EQ(GetRow("ApnConfigTable", apn - 1), rows[static_cast<size_t>(apn) - 1]) << "get and next";
        return Fields("ApnConfigTable", "ApnEnable");
    };
    EXPECT_EQ(enabled(), (Texts{"1", "1", "0", "0"}));
    ASSERT_EQ(nvram_set("apn3_enable", "1"), 0);
    EXPECT_EQ(enabled(), (Texts{"1", "1", "1", "0"})) << "what another process set";
    ASSERT_EQ(SetFields("ApnConfigTable", 1, {{"ApnEnable", "0"}, {"ApnName", "voice"}}), 0);
    EXPECT_EQ(Nvram("apn2_enable"), "0");
    EXPECT_EQ(enabled(), (Texts{"1", "0", "1", "0"}));
    ASSERT_EQ(update_config(), 0);
    ASSERT_EQ(nvram_set("apn2_enable", "1"), 0);
    LoadState();
    EXPECT_EQ(enabled(), (Texts{"1", "1", "1", "0"})) << "nvram decides after a restart too";
    EXPECT_EQ(Fields("ApnConfigTable", "ApnName")[1], "voice");
}

TEST_F(Lists, AParentPathThatFitsIsInItsColumn)
{
    const auto set_path = [](const char* table, const std::string& path)
    { return Table(table).ops->setPPath(RowIndex(Rows(table)[0].data()), path.c_str()); };
    EXPECT_EQ(set_path("node_595Table", "Device.IP."), 0);
    EXPECT_EQ(Fields("node_595Table", "pPath")[0], "Device.IP.");
    EXPECT_EQ(FindList("node_595Table")->rows.Rows()[0].parent_path, "");
    const OutputCapture output;
    EXPECT_EQ(set_path("node_595Table", std::string(256, 'p')), 2) << "one too long";
    EXPECT_NE(output.Text().find("256 characters"), std::string::npos) << "nobody looks at the result";
    EXPECT_EQ(Fields("node_595Table", "pPath")[0], "Device.IP.") << "unchanged";
    EXPECT_EQ(set_path("node_595Table", std::string(255, 'p')), 0) << "the longest";
}

TEST(LowText, LiesBelow4GiBAndIsSharedAndUnlimited)
{
    std::map<uint32_t, std::string> texts;
    for (size_t i = 0; i < 300; ++i)
    {
        const std::string text = std::to_string(i) + std::string(i == 299 ? 200000 : i * 40, 'x');
        texts[LowText(text)] = text;
        EXPECT_TRUE(texts.contains(LowText(text))) << "loading again takes no more memory";
    }
    EXPECT_EQ(texts.size(), 300u);
    for (const auto& [address, text] : texts)
        EXPECT_EQ(reinterpret_cast<const char*>(static_cast<uintptr_t>(address)), text);
}
}  // namespace kobd::test
