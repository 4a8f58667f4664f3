// Table requests of many rows, cut anywhere, and with the debug switch. requests/ has what they answer and call.
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "daemon/base/log.h"
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
constexpr char kIp[] = "FwIpFilterTable";

void PutIpRows(int32_t count)
{
    for (int32_t index = 1; index <= count; ++index) PutRow(kIp, index, {{"IP_LIST", "white"}});
}

std::string IpChange(int32_t index, std::string_view address)
{
    return Row(kIp, index) + Column("DestIPAddress", address);
}

// The changes that announcements tell, one "table index column" each. Each announcement begins anew.
Lines Announced()
{
    Lines told;
    for (const std::string& message : platform.sent)
    {
        std::string row = "no row: ";
        TlvReader reader(std::string_view(message).substr(sizeof(MessageHeader)));
        while (const auto item = reader.Next())
            if (item->tag == kTagTableName)
                row = std::string(*item->Text()) + " ";
            else if (item->tag == kTagRowIndex)
                row += std::to_string(*item->Int()) + " ";
            else
                told.push_back(row + std::string(*item->Text()));
    }
    return told;
}

int Set(const std::string& changes) { return Ask(ReqTableSet, Changes(changes)).result; }
}  // namespace

TEST_F(TableRequests, LargeFileIsReadWholeAndAnnouncedWhole)
{
    constexpr int32_t kRows = 32;
    PutIpRows(kRows);
    std::string items;
    Lines changes;
    for (int32_t number = 0; items.size() < 2u << 20; ++number)
    {
        const int32_t index = number % kRows + 1;
        items += IpChange(index, "10.0." + std::to_string(number % 256) + "." + std::to_string(index));
        changes.push_back("FwIpFilterTable " + std::to_string(index) + " DestIPAddress");
        if (number % 3 != 0) continue;
        items += Column("IP_LIST", std::to_string(number));
        changes.push_back("FwIpFilterTable " + std::to_string(index) + " IP_LIST");
    }
    EXPECT_EQ(Set(items), 0);
    EXPECT_EQ(platform.Calls("get").size(), static_cast<size_t>(kRows));
    EXPECT_EQ(platform.Calls("set").size(), static_cast<size_t>(kRows));
    EXPECT_TRUE(Announced() == changes) << "every change once, in file order, each with its row";
    EXPECT_EQ(platform.Calls("notify 4").size(), 1u);
}

TEST_F(TableRequests, FileOfMoreRowsThanThereCanBeIsRefused)
{
    std::string items;
    for (int32_t index = 1; index <= static_cast<int32_t>(kRowsMax); ++index) items += IpChange(index, "10.0.0.1");
    EXPECT_EQ(Set(items + IpChange(1, "10.0.0.2")), 13) << "a row that is pending already; the list knows none";
    platform.calls.clear();
    EXPECT_EQ(Set(items + IpChange(0, "10.0.0.1")), 7);
    EXPECT_EQ(CallsButReads(), Lines{"reply 7"});
    EXPECT_TRUE(NothingLeft());
}

TEST_F(TableRequests, FileCutAnywhereIsRefusedOrServed)
{
    const std::string items = IpChange(1, "10.0.0.1") + Column("IP_LIST", "black") + IpChange(2, "10.0.0.2") +
                              Row("ledsTable", 1) + Column("RelativeXPosition", "4294967295");
    std::vector<size_t> ends = {0};
    for (TlvReader reader(items); const auto item = reader.Next();)
        ends.push_back(ends.back() + kItemHeader + item->value.size());
    PutIpRows(2);
    PutRow("ledsTable", 1, {});
    for (size_t cut = 0; cut <= items.size(); ++cut)
    {
        platform.calls.clear();
        const bool whole = std::find(ends.begin(), ends.end(), cut) != ends.end();
        EXPECT_EQ(Ask(ReqTableSetSilent, Changes(items.substr(0, cut))).result, whole ? 0 : 2) << cut;
        EXPECT_EQ(platform.Calls("set").empty(), !whole || cut < ends[2]) << cut << ": a row that is named is stored";
    }
    EXPECT_TRUE(NothingLeft());
}

TEST_F(TableRequests, DebugModeTellsTheItemsAndEachRowOnce)
{
    PutIpRows(1);
    const std::string changes = Changes(IpChange(1, "100%s"));
    Ask(ReqTableSet, changes);
    EXPECT_EQ(output_.Text(), "") << "nothing without the switch";
    std::ofstream(kDebugSwitchFile).close();
    Ask(ReqTableSet, changes);
    const std::string loud = output_.Text();
    Ask(ReqTableSetSilent, changes);
    const std::string silent = output_.Text().substr(loud.size());
    Ask(ReqTableSet, Changes(Row(kIp, 1) + Column("NoSuch", "x")));
    EXPECT_NE(output_.Text().find("NoSuch", loud.size() + silent.size()), std::string::npos) << "what was refused";
    unlink(kDebugSwitchFile);
    EXPECT_NE(loud.find("\nFwIpFilterTable[1]:\n\tDestIPAddress='100%s'\n\n"), std::string::npos) << loud;
    for (const std::string& text : {loud, silent})
    {
        const size_t first = text.find("]: table->name[FwIpFilterTable]");
        EXPECT_NE(first, std::string::npos) << text;
        EXPECT_EQ(text.find("table->name", first + 10), std::string::npos) << "in one of the two walks: " << text;
    }
}
TEST_F(TableRequests, GetShowsWhatTheListFilledAndItsOwnIndex)
{
    platform.rows["ledsTable"][3] = std::string("\x09\x00\x00\x00", 4);  // a list that fills the index alone
    PutRow(kIp, 1, {{"DestIPAddress", std::string(63, 'x')}});
    Ask(ReqTableGet, Row(kIp, 1) + Row("ledsTable", 3));
    const TableDef& leds = Table("ledsTable");
    EXPECT_TRUE(platform.reply.ends_with(ItemsOf(leds, RowBytes(leds, 9, {})))) << "the row before shows through";
}

TEST_F(TableRequests, GetNeverPassesTheReplysEnd)
{
    PutRow(kIp, 1, {});
    const std::string one = Row(kIp, 1);
    const size_t row_size = ItemsOf(Table(kIp), platform.rows[kIp][1]).size();
    const size_t fits = (kPayloadMax - 8) / row_size;
    std::string payload;
    for (size_t i = 0; i < fits; ++i) payload += one;
    EXPECT_EQ(Ask(ReqTableGet, payload).payload, 8 + fits * row_size);
    EXPECT_EQ(Ask(ReqTableGet, payload + one).result, 11);
    EXPECT_EQ(platform.reply.substr(sizeof(MessageHeader)), IntItem(0, 11)) << "no row, rather than some of them";
}
}  // namespace kobd::test
