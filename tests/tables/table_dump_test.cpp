// Table dump through its handler, and dump files on a full disk.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "objects/handlers.h"
#include "tables/handlers.h"
#include "tests/failing_memory.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
constexpr char kTable[] = "FwIpFilterTable";
const std::string kLeds = TextItem(3, "ledsTable");

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
    std::string ip;
    for (const int32_t index : {3, 5, 7})
    {
        PutRow(kTable, index, {{"DestIPAddress", "10.0.0." + std::to_string(index)}});
        ip += ItemsOf(Table(kTable), platform.rows[kTable][index]);
    }
    PutRow("ledsTable", 1, {{"Name", "power"}, {"CyclePeriodRepetitions", "-5"}, {"RelativeYPosition", "4294967295"}});
    const std::string leds = ItemsOf(Table("ledsTable"), platform.rows["ledsTable"][1]);
    EXPECT_EQ(Dumped(kLeds + TextItem(1, kTable) + TextItem(9, "ledsTable")), leds + ip + leds)
        << "tags are not looked at, a table named twice is written twice";
    EXPECT_EQ(Dumped(TextItem(3, "UPnPTable")), "") << "an empty table";
    EXPECT_TRUE(platform.Calls("get").empty());

    const auto rows = platform.rows;
    PutRow("ledsTable", 1, {});
    EXPECT_EQ(Ask(ReqTableSetSilent, Changes(leds)).result, 0);
    EXPECT_TRUE(platform.rows == rows) << "a dump is read back by a set";
}

TEST_F(TableRequests, DumpFilesThatCannotBeMadeOrFilledAreRefusedAndRemoved)
{
    for (int32_t index = 1; index <= 64; ++index) PutRow("ledsTable", index, {});
    const struct
    {
        int (*handler)(MessageHeader*);
        std::string payload;
        unsigned long flags;
        const char* size;
        const char* why;
    } kCases[] = {
        {ReqTableDump, kLeds + kLeds + kLeds + kLeds + kLeds + kLeds + kLeds + kLeds, 0, "size=64k", "full at a write"},
        {ReqTableDump, kLeds, 0, "size=4k", "full at the close"},
        {ReqTableDump, kLeds, MS_RDONLY, "", "no file can be made"},
        {ReqShow, "", 0, "size=4k", "full"},
        {ReqShow, "", MS_RDONLY, "", "no file can be made"},
    };
    for (const auto& c : kCases)
    {
        ASSERT_EQ(mount("none", "/tmp", "tmpfs", c.flags, c.size), 0);
        const Answer answer = Ask(c.handler, c.payload);
        const size_t files = FilesLike("/tmp/kobd-");
        umount("/tmp");
        EXPECT_EQ(answer.result, 4) << c.why;
        EXPECT_EQ(answer.payload, 8u) << c.why;
        EXPECT_EQ(files, 0u) << c.why;
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
        const MemoryLeft none(-1, 0);
        EXPECT_EQ(Ask(ReqTableDump, TextItem(3, "SmsTable")).result, 7);
        EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u);
    }
    munmap(text, kSize);
}

// The configuration may give several rows one index, of which `next` always finds the first.
TEST_F(TableRequests, DumpEndsWhereRowsShareAnIndex)
{
    const struct
    {
        std::vector<int32_t> indexes;  // in the order of the rows
        size_t rows;                   // in the dump
        const char* why;
    } kCases[] = {
        {{1, 1}, 2, "the second row is found from the first, and then only itself"},
        {{1, 2, 1}, 4, "row 2 comes again before it is noticed"},
        {{1, 2, 3}, 3, "no index twice: the walk ends by itself"},
        {{-1}, 2, "an index that asks for the first row again"},
    };
    for (const auto& c : kCases)
    {
        platform.rows["ledsTable"].clear();
        for (size_t place = 0; place < c.indexes.size(); ++place)
            platform.rows["ledsTable"][static_cast<int32_t>(place) + 1] =
                RowBytes(Table("ledsTable"), c.indexes[place], {});
        EXPECT_EQ(Dumped(kLeds).size(), c.rows * ItemsOf(Table("ledsTable"), platform.rows["ledsTable"][1]).size())
            << c.why;
    }
}
}  // namespace kobd::test
