// Table set through its handlers: what is read, checked, stored and announced in which order.
// refused_requests_test.cpp has the files that are refused.
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
constexpr char kForward[] = "FwPortForwardTable";

void PutIpRows(int32_t count)
{
    for (int32_t index = 1; index <= count; ++index) PutRow(kIp, index, {{"IP_LIST", "white"}});
}

std::string IpChange(int32_t index, std::string_view address)
{
    return Row(kIp, index) + Column("DestIPAddress", address);
}

std::string Forward(int32_t index, const char* port)
{
    return Row(kForward, index) + Column("Protocol", "tcp") + Column("DestIPAddress", "192.168.1.20") +
           Column("DestPort", "80") + Column("SrcPort", port);
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

TEST_F(TableRequests, SetWritesInCatalogueOrderThenCommitsAndAnnounces)
{
    PutRow("ledsTable", 3, {{"Name", "power"}, {"Status", "on"}});
    PutIpRows(2);
    const auto before = platform.rows;
    const std::string items = Row("ledsTable", 3) + Column("Name", "wan") + Column("CyclePeriodRepetitions", "-1") +
                              IpChange(2, "10.0.0.2") + IpChange(1, "10.0.0.1") + Row("ledsTable", 3);
    EXPECT_EQ(Ask(ReqTableSet, Changes(items)).payload, 8u);
    EXPECT_EQ(
        platform.calls,
        (Lines{"get ledsListGet 3", "get securityIpFilterListGet 2", "get securityIpFilterListGet 1",
               "set securityIpFilterListSet 2", "set securityIpFilterListSet 1", "set ledsListSet 3", "update_config",
               "notify 3 ledsTable 3 Name CyclePeriodRepetitions FwIpFilterTable 2 DestIPAddress FwIpFilterTable "
               "1 DestIPAddress ledsTable 3",
               "notify 4", "reply 0"}));
    EXPECT_EQ(Field("ledsTable", 3, "Name") + Field("ledsTable", 3, "Status"), "wanon") << "columns not named stay";
    EXPECT_EQ(Field(kIp, 2, "DestIPAddress") + " " + Field(kIp, 2, "IP_LIST"), "10.0.0.2 white");
    EXPECT_TRUE(NothingLeft());
    EXPECT_EQ(FileText(kChangeFile), items) << "the file stays as it is";

    const auto rows = platform.rows;
    platform.rows = before;
    platform.calls.clear();
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes(items)).payload, 8u);
    EXPECT_EQ(CallsButReads(), (Lines{"set securityIpFilterListSet 2", "set securityIpFilterListSet 1",
                                      "set ledsListSet 3", "reply 0"}));
    EXPECT_TRUE(platform.rows == rows) << "the silent set stores the same rows";

    platform.calls.clear();
    EXPECT_EQ(Set(""), 0);
    EXPECT_EQ(platform.calls, (Lines{"update_config", "notify 3", "notify 4", "reply 0"})) << "a set of nothing";
}

TEST_F(TableRequests, RowNamedTwiceIsOneRowAndItsLastValuesCount)
{
    PutIpRows(2);
    EXPECT_EQ(Set(IpChange(1, "10.0.0.1") + IpChange(2, "10.0.0.2") + Row(kIp, 1) + Column("IP_LIST", "black") +
                  Column("DestIPAddress", "10.0.0.9") + Column("DestIPAddress", "10.0.0.8")),
              0);
    EXPECT_EQ(platform.Calls("get").size(), 2u);
    EXPECT_EQ(platform.Calls("set"), (Lines{"set securityIpFilterListSet 1", "set securityIpFilterListSet 2"}));
    EXPECT_EQ(Field(kIp, 1, "DestIPAddress") + " " + Field(kIp, 1, "IP_LIST"), "10.0.0.8 black");
}

TEST_F(TableRequests, ARowThatCannotBeReadIsZerosAndItsListDecides)
{
    PutIpRows(1);
    platform.failures["securityIpFilterListGet"] = 17;
    EXPECT_EQ(Set(IpChange(1, "10.0.0.1")), 0);
    EXPECT_EQ(Field(kIp, 1, "IP_LIST"), "");
    platform.calls.clear();
    EXPECT_EQ(Set(IpChange(2, "10.0.0.1")), 13);
    EXPECT_EQ(CallsButReads(), (Lines{"set securityIpFilterListSet 2", "reply 13"}));
}

TEST_F(TableRequests, SetThatFailsHalfWayKeepsWhatWasWrittenAndTellsNobody)
{
    PutIpRows(3);
    platform.failures["securityIpFilterListSet 2"] = 17;
    EXPECT_EQ(Set(IpChange(1, "10.0.0.1") + IpChange(2, "10.0.0.2") + IpChange(3, "10.0.0.3")), 17);
    EXPECT_EQ(CallsButReads(), (Lines{"set securityIpFilterListSet 1", "set securityIpFilterListSet 2", "reply 17"}));
    EXPECT_EQ(Field(kIp, 1, "DestIPAddress") + Field(kIp, 3, "DestIPAddress"), "10.0.0.1");
    EXPECT_TRUE(NothingLeft());
}

TEST_F(TableRequests, ChecksSeeWholeRowsAndTheStoredOnesOnly)
{
    for (const int32_t index : {1, 2, 3, 4}) PutRow(kForward, index, {});
    const struct
    {
        std::string changes;
        int result;
        const char* why;
    } kCases[] = {
        {Forward(1, "80"), 0, "the first"},
        {Forward(2, "90") + Forward(3, "80"), 2, "the second row claims a stored port"},
        {Row(kForward, 3) + Column("DestPort", "80"), 2, "so a row is judged whole, with the columns not given"},
        {Forward(2, "90") + Forward(3, "90"), 0, "each is judged before the other is stored"},
        {Forward(2, "90"), 2, "after that they collide"},
        {Forward(1, "80"), 0, "a stored rule with unchanged values"},
        {Forward(4, "") + Column("MinPort", "100") + Column("MaxPort", "110"), 0, "the check fills SrcPort"},
    };
    for (const auto& c : kCases)
    {
        const auto rows = platform.rows;
        EXPECT_EQ(Set(c.changes), c.result) << c.why;
        EXPECT_TRUE(c.result == 0 || platform.rows == rows) << "nothing is written: " << c.why;
    }
    EXPECT_EQ(Field(kForward, 4, "SrcPort"), "100-110") << "what the check leaves is stored";
}

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
}  // namespace kobd::test
