// Table set through its handlers: what is read, checked, stored and announced in which order, and
// that a refused request stores nothing.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "daemon/base/log.h"
#include "dictionary/name_index.h"
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
using namespace std::string_literals;

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

bool NothingPending()
{
    for (const TableDef& table : kTables)
        if (table.pending->first != nullptr) return false;
    return true;
}

// The changes that announcements tell, one "table index column" each; a row without a column as
// "table index ". An announcement that does not begin with its row gives a line of its own.
Lines Announced()
{
    Lines told;
    for (const std::string& call : platform.Calls("notify 3"))
    {
        std::istringstream words(call.substr(std::string("notify 3").size()));
        std::string row, word;
        while (words >> word)
            if (NameLookup(word).table != nullptr)
            {
                std::string index;
                words >> index;
                row = word + " " + index + " ";
            }
            else
                told.push_back((row.empty() ? "no row: " : row) + word);
    }
    return told;
}
}  // namespace

TEST_F(TableRequests, SetWritesInCatalogueOrderThenCommitsAndAnnounces)
{
    PutRow("ledsTable", 3, {{"Name", "power"}, {"Status", "on"}});
    PutIpRows(2);
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
    EXPECT_TRUE(NothingPending());

    const auto rows = platform.rows;
    EXPECT_EQ(FileText(kChangeFile), items) << "the file stays as it is";
    ResetPlatform();
    PutRow("ledsTable", 3, {{"Name", "power"}, {"Status", "on"}});
    PutIpRows(2);
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes(items)).payload, 8u);
    EXPECT_EQ(CallsButReads(), (Lines{"set securityIpFilterListSet 2", "set securityIpFilterListSet 1",
                                      "set ledsListSet 3", "reply 0"}));
    EXPECT_EQ(platform.rows, rows) << "the silent set stores the same rows";
}

TEST_F(TableRequests, RowNamedTwiceIsOneRowAndItsLastValuesCount)
{
    PutIpRows(2);
    Ask(ReqTableSetSilent,
        Changes(IpChange(1, "10.0.0.1") + IpChange(2, "10.0.0.2") + Row(kIp, 1) + Column("IP_LIST", "black") +
                Column("DestIPAddress", "10.0.0.9") + Column("DestIPAddress", "10.0.0.8")));
    EXPECT_EQ(platform.calls, (Lines{"get securityIpFilterListGet 1", "get securityIpFilterListGet 2",
                                     "set securityIpFilterListSet 1", "set securityIpFilterListSet 2", "reply 0"}));
    EXPECT_EQ(Field(kIp, 1, "DestIPAddress") + " " + Field(kIp, 1, "IP_LIST"), "10.0.0.8 black");
}

TEST_F(TableRequests, ARowThatCannotBeReadIsZerosAndItsListDecides)
{
    PutIpRows(1);
    platform.failures["securityIpFilterListGet"] = 17;
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes(IpChange(1, "10.0.0.1"))).result, 0);
    EXPECT_EQ(Field(kIp, 1, "IP_LIST"), "");
    EXPECT_EQ(Ask(ReqTableSet, Changes(IpChange(2, "10.0.0.1"))).result, 13);
    EXPECT_EQ(CallsButReads().back(), "reply 13");
    EXPECT_TRUE(platform.Calls("notify").empty());
}

TEST_F(TableRequests, SetThatFailsHalfWayKeepsWhatWasWrittenAndTellsNobody)
{
    PutIpRows(3);
    platform.failures["securityIpFilterListSet 2"] = 17;
    EXPECT_EQ(
        Ask(ReqTableSet, Changes(IpChange(1, "10.0.0.1") + IpChange(2, "10.0.0.2") + IpChange(3, "10.0.0.3"))).returned,
        17);
    EXPECT_EQ(CallsButReads(), (Lines{"set securityIpFilterListSet 1", "set securityIpFilterListSet 2", "reply 17"}));
    EXPECT_EQ(Field(kIp, 1, "DestIPAddress") + Field(kIp, 3, "DestIPAddress"), "10.0.0.1");
    EXPECT_TRUE(NothingPending());
}

TEST_F(TableRequests, RefusedSetStoresNothing)
{
    const std::string good = IpChange(1, "10.0.0.1");
    const std::string row = Row(kIp, 1);
    const struct
    {
        int result;
        const char* why;
        std::vector<std::string> items;
    } kCases[] = {
        {2, "an index or a column first", {IntItem(4, 1), TextItem(5, "IP_LIST")}},
        {2, "a value without its column", {good + row + TextItem(2, "10.0.0.9")}},
        {2, "a second index without its table", {good + IntItem(4, 2)}},
        {2, "two columns, one value", {good + row + TextItem(5, "IP_LIST") + TextItem(5, "IP_LIST")}},
        {2, "two names", {good + TextItem(3, kIp) + TextItem(3, kIp)}},
        {2, "a tag that is in no set", {good + IntItem(0, 0), good + TextItem(1, kIp), good + TextItem(6, "Device.")}},
        {2, "a tag past the set", {good + TextItem(9, "x"), good + TextItem(0x0103, kIp)}},
        {1, "no such table, an object", {good + Row("noSuchTable", 1), good + Row("webHttpPort", 1)}},
        {12, "no such column", {good + row + Column("ip_list", "white"), good + row + Column("", "white")}},
        {2, "a text one too long", {good + row + Column("IP_LIST", std::string(32, 'w'))}},
        {2, "an index of one byte", {good + TextItem(3, kIp) + RawItem(4, "\x01"s)}},
        {2, "a name without its zero byte", {good + RawItem(3, kIp)}},
        {2, "a column without its zero byte", {good + row + RawItem(5, "IP_LIST") + TextItem(2, "x")}},
        {2, "a value without its zero byte", {good + row + TextItem(5, "IP_LIST") + RawItem(2, "white")}},
        {2, "half an item header", {good + "\x03\x00"s}},
        {2, "a value past the end of the file", {good + row + TextItem(5, "IP_LIST") + "\x02\x00\x06\x00whit"s}},
        {16, "a table without set, later in the catalogue", {good + Row("node_traceTable", 1) + Column("Host", "h")}},
        {16, "a row of a table without set, though nothing changes", {good + Row("FlowTable", 1)}},
    };
    for (const auto& c : kCases)
        for (const std::string& items : c.items)
        {
            ResetPlatform();
            PutIpRows(1);
            EXPECT_EQ(Ask(ReqTableSet, Changes(items)).returned, c.result) << c.why;
            EXPECT_EQ(CallsButReads(), Lines{"reply " + std::to_string(c.result)}) << c.why;
            EXPECT_EQ(Ask(ReqTableSetSilent, Changes(items)).payload, 8u) << c.why;
            EXPECT_EQ(CallsButReads().size(), 2u) << "the silent set stores nothing either: " << c.why;
            EXPECT_TRUE(NothingPending()) << c.why;
        }
}

TEST_F(TableRequests, CheckSeesTheWholeRowBeforeItIsStored)
{
    PutRow("FwMacFilterTable", 1, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:01"}});
    PutRow("FwMacFilterTable", 2, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:02"}});
    const std::string row = Row("FwMacFilterTable", 2);
    EXPECT_EQ(Ask(ReqTableSet, Changes(row + Column("MAC", "00:1A:2B:3C:4D:03"))).result, 0);
    EXPECT_EQ(Field("FwMacFilterTable", 2, "MAC"), "00:1A:2B:3C:4D:03");
    EXPECT_EQ(Ask(ReqTableSet, Changes(row + Column("MAC", "00:1A:2B:3C:4D:01"))).result, 2)
        << "the same address in the same list, which the file does not name";
    EXPECT_EQ(platform.Calls("set").size(), 1u);
}

TEST_F(TableRequests, EmptyFileIsASetOfNothing)
{
    EXPECT_EQ(Ask(ReqTableSet, Changes("")).payload, 8u);
    EXPECT_EQ(platform.calls, (Lines{"update_config", "notify 3", "notify 4", "reply 0"}));
    ResetPlatform();
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes("")).result, 0);
    EXPECT_EQ(platform.calls, Lines{"reply 0"});
}

TEST_F(TableRequests, FileThatIsNone)
{
    ASSERT_TRUE(mkfifo("/tmp/pipe", 0600) == 0 || errno == EEXIST);
    std::filesystem::create_directory("/tmp/folder");
    Changes(IpChange(1, "10.0.0.1"));
    const struct
    {
        int result;
        const char* why;
        std::vector<std::string> payloads;
    } kCases[] = {
        {2, "no item, a lone item header", {"", RawItem(2, "")}},
        {2, "a path without its zero byte", {RawItem(2, kChangeFile)}},
        {2, "a broken item behind the path", {TextItem(2, kChangeFile) + "\x02\x00\x05"s}},
        {4,
         "no path, missing, a folder",
         {TextItem(2, ""), TextItem(2, "/tmp/no such file"), TextItem(2, "/tmp/folder")}},
        {4, "a pipe that nobody writes to; opening it must not wait", {TextItem(2, "/tmp/pipe")}},
        {4, "a device that never ends", {TextItem(2, "/dev/zero")}},
    };
    for (const auto& c : kCases)
        for (const std::string& payload : c.payloads)
            for (auto* handler : {ReqTableSet, ReqTableSetSilent})
            {
                ResetPlatform();
                EXPECT_EQ(Ask(handler, payload).returned, c.result) << c.why;
                EXPECT_EQ(platform.calls, Lines{"reply " + std::to_string(c.result)}) << c.why;
            }
    EXPECT_EQ(Ask(ReqTableSetSilent, TextItem(7, kChangeFile)).result, 13) << "the path's tag is not looked at";
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
        if (number % 3 == 0) items += Column("IP_LIST", std::to_string(number));
        changes.push_back("FwIpFilterTable " + std::to_string(index) + " DestIPAddress");
        if (number % 3 == 0) changes.push_back("FwIpFilterTable " + std::to_string(index) + " IP_LIST");
    }
    EXPECT_EQ(Ask(ReqTableSet, Changes(items)).result, 0);
    EXPECT_EQ(platform.Calls("get").size(), static_cast<size_t>(kRows));
    EXPECT_EQ(platform.Calls("set").size(), static_cast<size_t>(kRows));
    EXPECT_TRUE(Announced() == changes) << "every change once, in file order, each with its row";
    EXPECT_EQ(platform.Calls("notify 4").size(), 1u);
}

TEST_F(TableRequests, FileOfMoreRowsThanThereCanBeIsRefused)
{
    std::string items;
    for (int32_t index = 1; index <= static_cast<int32_t>(kRowsMax); ++index) items += IpChange(index, "10.0.0.1");
    EXPECT_EQ(Ask(ReqTableSet, Changes(items)).result, 13) << "the list does not know the first";
    EXPECT_EQ(Ask(ReqTableSet, Changes(items + IpChange(1, "10.0.0.2"))).result, 13) << "a row that is pending already";
    platform.calls.clear();
    EXPECT_EQ(Ask(ReqTableSet, Changes(items + IpChange(0, "10.0.0.1"))).result, 7);
    EXPECT_EQ(CallsButReads(), Lines{"reply 7"});
    EXPECT_TRUE(NothingPending());
}

TEST_F(TableRequests, FileCutAnywhereIsRefusedOrServed)
{
    const std::string items = IpChange(1, "10.0.0.1") + Column("IP_LIST", "black") + IpChange(2, "10.0.0.2") +
                              Row("ledsTable", 1) + Column("RelativeXPosition", "4294967295");
    std::vector<size_t> ends = {0};
    for (TlvReader reader(items); const auto item = reader.Next();)
        ends.push_back(ends.back() + kItemHeader + item->value.size());
    for (size_t cut = 0; cut <= items.size(); ++cut)
    {
        ResetPlatform();
        PutIpRows(2);
        PutRow("ledsTable", 1, {});
        const bool whole = std::find(ends.begin(), ends.end(), cut) != ends.end();
        EXPECT_EQ(Ask(ReqTableSetSilent, Changes(items.substr(0, cut))).result, whole ? 0 : 2) << cut;
        EXPECT_EQ(platform.Calls("set").empty(), !whole || cut < ends[2]) << cut << ": a row that is named is stored";
        EXPECT_TRUE(NothingPending());
    }
}

TEST_F(TableRequests, DebugModeTellsTheItemsAndEachRowOnce)
{
    PutIpRows(1);
    const std::string changes = Changes(IpChange(1, "100%s"));
    Ask(ReqTableSet, changes);
    EXPECT_EQ(output_.Text(), "") << "nothing without the switch";
    std::ofstream(kDebugSwitchFile).close();
    const size_t before = output_.Text().size();
    Ask(ReqTableSet, changes);
    const std::string loud = output_.Text().substr(before);
    Ask(ReqTableSetSilent, changes);
    const std::string silent = output_.Text().substr(before + loud.size());
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
