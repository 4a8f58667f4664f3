// The list operations, called as the table requests call them: through the catalogue's records.
#include "host/tables/lists.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <map>

#include "dictionary/row_field.h"
#include "host/tables/low_text.h"
#include "host/tables/row_cells.h"
#include "platform/kob_platform.h"
#include "platform/nvram.h"
#include "tests/host/host_state.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
using Lists = HostState;
using Block = std::vector<char>;
using namespace std::string_view_literals;

std::map<std::string, std::vector<Block>> EverySingleRow()
{
    std::map<std::string, std::vector<Block>> rows;
    for (const List& list : AllLists())
        for (const Row& row : list.rows.Rows()) rows[list.table].push_back(row.block);
    return rows;
}

// The list that keeps the rows of the table; nullptr for the daemon's own lists.
List* ListBehind(const TableDef& table)
{
    for (const TableDef& owner : kTables)
        if (owner.ops == table.ops) return FindList(owner.name);
    return nullptr;
}

std::vector<Block> Walk(const TableDef& table)
{
    std::vector<Block> rows;
    Block row(table.row_size);
    for (int32_t previous = -1; table.ops->next(previous, row.data()) == 0;)
    {
        rows.push_back(row);
        memcpy(&previous, row.data(), sizeof previous);
    }
    return rows;
}

Block BlockOf(const TableDef& table, int32_t index, char fill)
{
    Block row(table.row_size, fill);
    memcpy(row.data(), &index, sizeof index);
    return row;
}

// The rows of APNs have the number of their APN less 1, those of other tables count from 1.
int32_t BeforeFirst(const TableDef& table)
{
    return table.name == "ApnConfigTable"sv || table.name == "ApnStatusTable"sv ? -1 : 0;
}

// Whether the operation answers `result`, or is not there.
template <typename Operation, typename... Arguments>
bool Answers(Operation operation, int result, Arguments... arguments)
{
    return operation == nullptr || operation(arguments...) == result;
}

std::string Column(const TableDef& table, const Block& row, std::string_view name)
{
    return ColumnText({table.columns, table.column_count}, row.data(), name);
}
}  // namespace

TEST_F(Lists, EveryTableWorksOnItsOwnListAlone)
{
    int tables = 0;
    for (const TableDef& table : kTables)
    {
        List* list = ListBehind(table);
        if (list == nullptr) continue;
        ++tables;
        if (list->table == "ApnConfigTable"sv) continue;  // its list does not keep all of a row, see below
        SCOPED_TRACE(table.name);
        EXPECT_EQ(list->rows.RowSize(), table.row_size);
        EXPECT_EQ(Walk(table), EverySingleRow()[list->table]) << "next";
        int32_t index = list->rows.Rows().empty() ? -1 : IndexOf(list->rows.Rows().front());
        const int added = table.ops->add == nullptr ? 0 : table.ops->add(&index);
        EXPECT_EQ(added, added == kTableFull && list->rows.Rows().size() == table.max_rows ? kTableFull : 0);
        if (index == -1) continue;  // nothing in it, and nothing can be

        auto others = EverySingleRow();
        const Block row = BlockOf(table, index, static_cast<char>('A' + tables % 26));
        EXPECT_TRUE(Answers(table.ops->set, 0, index, row.data()));
        Block got = row;
        EXPECT_TRUE(Answers(table.ops->get, 0, index, got.data()));
        EXPECT_EQ(got == row, table.ops->set != nullptr || table.ops->get == nullptr) << "set, then get";
        const std::vector<Block> walked = Walk(table);
        EXPECT_EQ(std::count(walked.begin(), walked.end(), got), table.ops->get != nullptr) << "get, then next";
        EXPECT_TRUE(Answers(table.ops->del, 0, index));
        EXPECT_TRUE(Answers(table.ops->get, table.ops->del == nullptr ? 0 : kIndexNotFound, index, got.data()));
        auto now = EverySingleRow();
        others.erase(list->table);
        now.erase(list->table);
        EXPECT_EQ(now, others) << "no other list has changed";
    }
    EXPECT_EQ(tables, 99);
}

TEST_F(Lists, AbsentRowsOfEveryTable)
{
    for (const TableDef& table : kTables)
    {
        if (ListBehind(table) == nullptr) continue;
        SCOPED_TRACE(table.name);
        Block row(table.row_size, 'x');
        const Block before = row;
        for (const int32_t absent : {BeforeFirst(table), -1, -2, 1000000, INT32_MAX, INT32_MIN})
        {
            EXPECT_TRUE(Answers(table.ops->get, kIndexNotFound, absent, row.data()));
            EXPECT_TRUE(Answers(table.ops->set, kIndexNotFound, absent, row.data()));
            EXPECT_TRUE(Answers(table.ops->del, kIndexNotFound, absent));
            EXPECT_TRUE(Answers(table.ops->setPPath, kIndexNotFound, absent, "x"));
            EXPECT_TRUE(absent == -1 || table.ops->next(absent, row.data()) == kIndexNotFound);
        }
        EXPECT_EQ(row, before) << "the caller's block";
    }
}

TEST_F(Lists, RowsOfApnsHaveTheNumberOfTheirApnLessOne)
{
    for (const char* name : {"ApnConfigTable", "ApnStatusTable"})
    {
        const std::vector<Block> rows = Walk(Table(name));
        ASSERT_EQ(rows.size(), 4u) << name;
        for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(RowIndex(rows[static_cast<size_t>(i)].data()), i) << name;
    }
}

TEST_F(Lists, WhetherAnApnIsEnabledIsTheSameInItsRowAndInNvram)
{
    const TableDef& table = Table("ApnConfigTable");
    const auto in_rows = [&]
    {
        std::string enabled;
        Block row(table.row_size);
        for (int32_t apn = 1; apn <= 4; ++apn)
        {
            EXPECT_EQ(table.ops->get(apn - 1, row.data()), 0);
            EXPECT_EQ(row, Walk(table)[static_cast<size_t>(apn) - 1]) << "get and next";
            enabled += Column(table, row, "ApnEnable") + " ";
        }
        return enabled;
    };
    EXPECT_EQ(in_rows(), "1 1 0 0 ");
    ASSERT_EQ(nvram_set("apn3_enable", "1"), 0);
    EXPECT_EQ(in_rows(), "1 1 1 0 ") << "what another process set";

    Block row = Walk(table)[1];
    const ColumnDef& enable = *FindColumn(*FindList("ApnConfigTable")->layout, "ApnEnable");
    const ColumnDef& name = *FindColumn(*FindList("ApnConfigTable")->layout, "ApnName");
    ASSERT_EQ(TableFieldFromString(row.data(), enable, "0"), 0);
    ASSERT_EQ(TableFieldFromString(row.data(), name, "voice"), 0);
    ASSERT_EQ(table.ops->set(1, row.data()), 0);
    char value[8];
    ASSERT_EQ(nv_get("apn2_enable", value, sizeof value), 0);
    EXPECT_STREQ(value, "0");
    EXPECT_EQ(in_rows(), "1 0 1 0 ");

    ASSERT_EQ(update_config(), 0);
    ASSERT_EQ(nvram_set("apn2_enable", "1"), 0);
    LoadState();
    EXPECT_EQ(in_rows(), "1 1 1 0 ") << "nvram is what counts after a restart too";
    EXPECT_EQ(Column(table, Walk(table)[1], "ApnName"), "voice");
}

TEST_F(Lists, ARowWhoseNvramCannotBeWrittenIsNotSet)
{
    const TableDef& table = Table("ApnConfigTable");
    const std::vector<Block> before = Walk(table);
    Block row = before[0];
    for (const auto& [column, text] : {std::pair("ApnEnable", "0"), std::pair("ApnName", "other")})
        ASSERT_EQ(TableFieldFromString(row.data(), *FindColumn(*FindList("ApnConfigTable")->layout, column), text), 0);
    const OutputCapture output;
    sqlite3* other = nullptr;  // a process that writes for longer than anybody waits
    ASSERT_EQ(sqlite3_open(Path("kobd.db").c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(table.ops->set(0, row.data()), 17);
    sqlite3_close(other);
    EXPECT_EQ(Walk(table), before);
}

TEST_F(Lists, TwoNamesForOneList)
{
    for (const auto& [one, other] : {std::pair("FwPortForwardTable", "PortRedirectTable"),
                                     std::pair("FwParentControlTable", "ParentalControlTable")})
    {
        int32_t index = 0;
        ASSERT_EQ(Table(one).ops->add(&index), 0);
        const Block row = BlockOf(Table(one), index, 'q');
        EXPECT_EQ(Table(other).ops->set(index, row.data()), 0);
        EXPECT_EQ(Walk(Table(one)).back(), row);
        EXPECT_EQ(Table(other).ops->del(index), 0);
        EXPECT_EQ(Table(one).ops->del(index), kIndexNotFound);
    }
}

TEST_F(Lists, SetKeepsTheIndexItWasCalledWith)
{
    const TableDef& table = Table("FwUrlFilterTable");
    int32_t index = 0;
    ASSERT_EQ(table.ops->add(&index), 0);
    ASSERT_EQ(table.ops->set(index, BlockOf(table, index + 40, 'u').data()), 0);
    EXPECT_EQ(Walk(table).back(), BlockOf(table, index, 'u'));
}

TEST_F(Lists, ParentPathInItsColumnOrBesideTheRow)
{
    for (const char* name : {"node_595Table", "FwUrlFilterTable"})
    {
        const TableDef& table = Table(name);
        int32_t index = 0;
        ASSERT_EQ(table.ops->add(&index), 0);
        EXPECT_EQ(table.ops->setPPath(index, "Device.IP."), 0);
        const Row* row = FindList(name)->rows.Find(index);
        const bool has_column = std::string(name) == "node_595Table";
        EXPECT_EQ(row->parent_path, has_column ? "" : "Device.IP.");
        if (!has_column) continue;
        EXPECT_EQ(Column(table, row->block, "pPath"), "Device.IP.");
        const OutputCapture output;
        EXPECT_EQ(table.ops->setPPath(index, std::string(256, 'p').c_str()), 2) << "one too long";
        EXPECT_NE(output.Text().find("256 characters"), std::string::npos) << "nobody looks at the result";
        EXPECT_EQ(Column(table, row->block, "pPath"), "Device.IP.") << "unchanged";
        EXPECT_EQ(table.ops->setPPath(index, std::string(255, 'p').c_str()), 0) << "the longest";
    }
}

TEST(LowText, LiesBelow4GiBAndIsSharedAndUnlimited)
{
    const uint32_t hello = LowText("hello");
    ASSERT_NE(hello, 0u);
    EXPECT_STREQ(reinterpret_cast<const char*>(static_cast<uintptr_t>(hello)), "hello");
    EXPECT_EQ(LowText("hello"), hello) << "loading again takes no more memory";
    std::map<uint32_t, std::string> texts;
    for (int i = 0; i < 300; ++i)
    {
        const std::string text = std::to_string(i) + std::string(static_cast<size_t>(i) * 40, 'x');
        texts[LowText(text)] = text;
    }
    texts[LowText(std::string(200000, 'y'))] = std::string(200000, 'y');
    EXPECT_EQ(texts.size(), 301u);
    for (const auto& [address, text] : texts)
        EXPECT_EQ(reinterpret_cast<const char*>(static_cast<uintptr_t>(address)), text);
}
}  // namespace kobd::test
