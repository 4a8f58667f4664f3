// Table dump through its handler.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cellular/cellular_lists.h"
#include "tables/handlers.h"
#include "tests/recording_shell.h"
#include "tests/tables/table_rows.h"
#include "tests/validators/row_verdict.h"

namespace kobd::test
{
using namespace std::string_literals;

namespace
{
constexpr char kIp[] = "FwIpFilterTable";

// What the dump of these tables holds; the file is removed.
std::string Dumped(const std::string& payload)
{
    const Answer answer = Ask(ReqTableDump, payload);
    if (answer.result != 0 || answer.texts.size() != 1) return "result " + std::to_string(answer.result);
    struct stat status;
    EXPECT_EQ(stat(answer.texts[0].c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
    const std::string text = FileText(answer.texts[0]);
    unlink(answer.texts[0].c_str());
    return text;
}

// Text at an address that a row can hold, on 64 bits too.
char* LowText(size_t size)
{
    void* const low = reinterpret_cast<void*>(uintptr_t{0x20000000});
    void* place = mmap(low, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return place != MAP_FAILED && reinterpret_cast<uintptr_t>(place) <= UINT32_MAX ? static_cast<char*>(place)
                                                                                   : nullptr;
}

void PutSms(int32_t index, const char* content)
{
    PutRow("SmsTable", index, {{"Tag", std::to_string(index)}});
    const auto address = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(content));
    memcpy(platform.rows["SmsTable"][index].data() + 8, &address, sizeof address);
}
}  // namespace

TEST_F(TableRequests, DumpHoldsEveryRowOfTheTablesInRequestOrder)
{
    for (const int32_t index : {7, 3, 5}) PutRow(kIp, index, {{"DestIPAddress", "10.0.0." + std::to_string(index)}});
    PutRow("ledsTable", 1, {{"Name", "power"}});
    const std::string ip = RowItems(kIp, 3, {{"DestIPAddress", "10.0.0.3"}}) +
                           RowItems(kIp, 5, {{"DestIPAddress", "10.0.0.5"}}) +
                           RowItems(kIp, 7, {{"DestIPAddress", "10.0.0.7"}});
    const std::string leds = RowItems("ledsTable", 1, {{"Name", "power"}});
    EXPECT_EQ(Dumped(TextItem(3, kIp)), ip);
    EXPECT_EQ(Dumped(TextItem(3, "ledsTable") + TextItem(1, kIp) + TextItem(9, "ledsTable")), leds + ip + leds)
        << "tags are not looked at, a table named twice is written twice";
    EXPECT_EQ(Dumped(TextItem(3, "UPnPTable")), "") << "an empty table";
    EXPECT_TRUE(platform.Calls("get").empty());
}

TEST_F(TableRequests, DumpIsReadBackBySet)
{
    PutRow("ledsTable", 4, {{"Name", "power"}, {"CyclePeriodRepetitions", "-5"}, {"RelativeYPosition", "4294967295"}});
    const auto rows = platform.rows;
    const std::string dump = Dumped(TextItem(3, "ledsTable"));
    PutRow("ledsTable", 4, {});
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes(dump)).result, 0);
    EXPECT_EQ(platform.rows, rows);
}

TEST_F(TableRequests, DumpThatFailsLeavesNoFile)
{
    const std::string good = TextItem(3, kIp);
    const struct
    {
        int result;
        const char* why;
        std::vector<std::string> payloads;
    } kCases[] = {
        {2, "no item, a lone item header", {"", RawItem(3, "")}},
        {1, "no table behind a table", {good + TextItem(3, "noSuchTable"), good + TextItem(3, "webHttpPort")}},
        {2, "a broken name or item", {good + RawItem(3, kIp), good + "\x03\x00\xFF\x00"s}},
    };
    for (const auto& c : kCases)
        for (const std::string& payload : c.payloads)
        {
            ResetPlatform();
            PutRow(kIp, 1, {});
            const Answer answer = Ask(ReqTableDump, payload);
            EXPECT_EQ(answer.returned, c.result) << c.why;
            EXPECT_EQ(answer.payload, 8u) << c.why;
            EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << c.why;
        }
}

TEST_F(TableRequests, DumpToAFullDiskIsRefusedAndRemoved)
{
    for (int32_t index = 1; index <= 64; ++index) PutRow("ledsTable", index, {});
    const std::string leds = TextItem(3, "ledsTable");
    const std::string several = leds + leds + leds + leds + leds + leds + leds + leds;  // about 100 KiB
    for (const char* size : {"size=64k", "size=4k"})  // full at a write, full at the close
    {
        ASSERT_EQ(mount("none", "/tmp", "tmpfs", 0, size), 0);
        const Answer answer = Ask(ReqTableDump, size == "size=4k"s ? leds : several);
        const size_t files = FilesLike("/tmp/kobd-");
        umount("/tmp");
        EXPECT_EQ(answer.result, 4) << size;
        EXPECT_EQ(answer.payload, 8u) << size;
        EXPECT_EQ(files, 0u) << size;
    }
}

TEST_F(TableRequests, TextsOutsideTheRow)
{
    constexpr size_t kSize = 1 << 17;
    char* text = LowText(kSize);
    if (text == nullptr) GTEST_SKIP() << "no memory below 4 GiB here";
    memset(text, 't', kSize - 1);
    PutSms(1, text + kSize - 1 - 65534);
    PutSms(2, text);
    PutSms(3, nullptr);
    const std::string longest(65534, 't');
    const auto row = [](int32_t index, const std::string& content)
    { return Row("SmsTable", index) + Column("Tag", std::to_string(index)) + Column("Content", content); };
    EXPECT_TRUE(Dumped(TextItem(3, "SmsTable")) == row(1, longest) + row(2, longest) + row(3, ""))
        << "whole up to what an item can carry, cut there";
    {
        const NoMemoryForRows none;
        const Answer answer = Ask(ReqTableDump, TextItem(3, "SmsTable"));
        EXPECT_EQ(answer.result, 7);
        EXPECT_EQ(answer.payload, 8u);
        EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u);
    }
    munmap(text, kSize);
}
// The configuration may give several rows one index, of which `next` always finds the first.
TEST_F(TableRequests, DumpEndsWhereRowsShareAnIndex)
{
    SKIP_WITHOUT_NAMESPACES();
    struct Case
    {
        std::vector<std::string> indexes;  // in the order of the rows
        size_t rows;                       // in the dump
        const char* why;
    };
    const Case cases[] = {
        {{"1", "1"}, 2, "the second row is found from the first, and then only itself"},
        {{"1", "2", "1"}, 4, "row 2 comes again before it is noticed"},
        {{"1", "2", "3"}, 3, "no index twice: the walk ends by itself"},
        {{"-1"}, 2, "an index that asks for the first row again"},
    };
    for (const Case& one : cases)
    {
        ResetShell();
        for (size_t i = 0; i < one.indexes.size(); ++i)
        {
            const std::string section = "cfg" + std::to_string(i);
            shell.sections.emplace_back(section, "cellularusim");
            shell.options["tr069_interface." + section + ".index"] = one.indexes[i];
        }
        cellularusimListInit();
        const std::string items = Dumped(TextItem(kTagTableName, "CellularUSIMTable"));
        size_t rows = 0;
        for (size_t at = 0; (at = items.find("CellularUSIMTable", at)) != std::string::npos; ++at) ++rows;
        EXPECT_EQ(rows, one.rows) << one.why;
    }
    ResetShell();
    cellularusimListInit();
}
}  // namespace kobd::test
