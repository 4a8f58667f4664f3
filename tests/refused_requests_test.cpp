// What no handler serves: the result alone is answered, and nothing is changed, announced or left over.
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "objects/handlers.h"
#include "tables/handlers.h"
#include "tests/failing_memory.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
using namespace std::string_literals;

namespace
{
using RefusedRequests = TableRequests;
using Handlers = std::vector<int (*)(MessageHeader*)>;

const Handlers kGet = {ReqObjGet};
const Handlers kSets = {ReqObjSet, ReqObjSetSilent};
const Handlers kCounts = {ReqTableMaxRow, ReqTableElementCount};
const Handlers kAdd = {ReqTableAdd};
const Handlers kSubAdd = {REQSubTableAdd};
const Handlers kDel = {ReqTableDel};
const Handlers kRowGet = {ReqTableGet};
const Handlers kDump = {ReqTableDump};
const Handlers kRowSets = {ReqTableSet, ReqTableSetSilent};
const Handlers kAll = {ReqObjGet,   ReqObjSet,        ReqObjSetSilent, ReqTableMaxRow, ReqTableElementCount,
                       ReqTableAdd, REQSubTableAdd,   ReqTableDel,     ReqTableGet,    ReqTableDump,
                       ReqTableSet, ReqTableSetSilent};

struct Refusal
{
    Handlers handlers;
    int result;
    const char* why;
    std::vector<std::string> payloads;
};

constexpr char kIp[] = "FwIpFilterTable";
const std::string kPort = Pair("webHttpPort", "8080");  // a good one, as are the next three
const std::string kLeds = TextItem(3, "ledsTable");
const std::string kRow = Row(kIp, 1);
const std::string kChange = kRow + Column("DestIPAddress", "10.0.0.1");
const std::string kPath = TextItem(2, "Device.LEDs.");
const std::string kLongPath = TextItem(2, std::string(980 - (4 + 10) - 8 - 4, 'p'));  // its zero byte is too much

const Refusal kRequests[] = {
    {kAll, 2, "no item, a lone item header", {"", "\x01\x00\x00\x00"s, RawItem(3, "")}},

    {kGet, 2, "no zero byte ends the name", {RawItem(1, "webHttpPort")}},
    {kGet, 2, "half an item header, a length past the end", {Name("IMEI") + "\1\0"s, Name("a") + "\1\0\x09\0IMEI\0"s}},

    {kSets, 2, "a name without a value", {Name("webHttpPort"), kPort + Name("webHttpsPort")}},
    {kSets,
     2,
     "a value before its name, or without",
     {TextItem(2, "80") + Name("webHttpPort"), kPort + TextItem(2, "81")}},
    {kSets, 2, "a name where a value belongs", {kPort + Name("webHttpsPort") + Name("webHttpsPort")}},
    {kSets, 2, "a table's tag", {TextItem(3, "webHttpPort") + TextItem(2, "1")}},
    {kSets, 1, "no such name", {kPort + Pair("noSuch", "1"), kPort + Pair("webhttpport", "1"), kPort + Pair("", "1")}},
    {kSets, 2, "a table", {kPort + Pair("FlowTable", "1")}},
    {kSets, 10, "read-only", {kPort + Pair("IMEI", "1")}},
    {kSets, 2, "outside its limitation", {kPort + Pair("webHttpsPort", "65536")}},
    {kSets, 2, "also when a later pair gives a good value", {Pair("webHttpPort", "x") + kPort}},
    {kSets,
     2,
     "value without its zero byte",
     {kPort + Name("webHttpsPort") + RawItem(2, "81"), kPort + RawItem(2, "")}},
    {kSets, 2, "name without its zero byte", {kPort + RawItem(1, "webHttpsPort") + TextItem(2, "81")}},
    {kSets, 2, "a byte too many", {kPort + "\x01"s}},
    {kSets, 2, "length past the end", {kPort + Name("webHttpsPort") + "\x02\x00\xFF\xFF"s + "81\0"s}},

    {kCounts, 2, "a name without its zero byte, a byte too many", {RawItem(3, "ledsTable"), kLeds + "\x01"s}},
    {kCounts, 1, "no table of that name", {TextItem(3, "webHttpPort"), TextItem(3, "ledstable"), TextItem(3, "")}},
    {kAdd, 1, "unknown", {TextItem(3, "noSuchTable")}},
    {kAdd, 16, "a table that only shows", {TextItem(3, "FlowTable")}},
    {kAdd, 2, "an item past the end, though not needed", {kLeds + "\x03\x00\xFF\x00"s}},
    {kSubAdd, 2, "no parent path, one without its zero byte", {kLeds, kLeds + RawItem(2, "Device.LEDs.")}},
    {kSubAdd, 16, "setPPath without add", {TextItem(3, "OnlineDeviceTable") + kPath}},
    {kSubAdd, 16, "add without setPPath", {TextItem(3, "IpMacBindTable") + kPath}},
    {kSubAdd, 2, "a path that no notification can carry", {kLeds + kLongPath}},
    {kDel,
     2,
     "no index, one of two or five bytes",
     {kLeds, kLeds + RawItem(4, "\1\0"s), kLeds + RawItem(4, "\1\0\0\0\0"s)}},
    {kDel, 16, "a table that only grows", {TextItem(3, "node_traceTable") + IntItem(4, 1)}},
    {kDel, 1, "items the wrong way round: the index is read as an unknown name", {IntItem(4, 1) + kLeds}},

    {kRowGet, 2, "an index first, an object's tag", {IntItem(4, 1), TextItem(1, kIp) + IntItem(4, 1)}},
    {kRowGet, 2, "an index without its table", {kRow + IntItem(4, 1)}},
    {kRowGet,
     2,
     "a name where an index belongs, a column name",
     {TextItem(3, kIp) + kRow, kRow + TextItem(5, "IP_LIST")}},
    {kRowGet,
     1,
     "an unknown name at the end, an object",
     {kRow + TextItem(3, "noSuchTable"), kRow + Row("webHttpPort", 1)}},
    {kRowGet, 16, "no get operation, though no row is asked for", {kRow + TextItem(3, "FlowTable_24G")}},
    {kRowGet, 13, "the list's code", {kRow + Row(kIp, 2)}},
    {kRowGet, 2, "an index of two bytes", {kRow + TextItem(3, kIp) + RawItem(4, "\x01\x00"s)}},
    {kRowGet, 2, "a name without its zero byte", {kRow + RawItem(3, kIp) + IntItem(4, 1)}},
    {kRowGet, 2, "a byte too many, an item past the end", {kRow + "\x03"s, kRow + "\x03\x00\x10\x00leds\0"s}},

    {kDump, 1, "no table behind a table", {kLeds + TextItem(3, "noSuchTable"), kLeds + TextItem(3, "webHttpPort")}},
    {kDump, 2, "a broken name or item", {kLeds + RawItem(3, kIp), kLeds + "\x03\x00\xFF\x00"s}},

    {kRowSets, 2, "a path without its zero byte", {RawItem(2, kChangeFile)}},
    {kRowSets, 2, "a broken item behind the path", {TextItem(2, kChangeFile) + "\x02\x00\x05"s}},
    {kRowSets,
     4,
     "no path, missing, a folder",
     {TextItem(2, ""), TextItem(2, "/tmp/none"), TextItem(2, "/tmp/folder")}},
    {kRowSets, 4, "a pipe that nobody writes to; opening it must not wait", {TextItem(2, "/tmp/pipe")}},
    {kRowSets, 4, "a device that never ends", {TextItem(2, "/dev/zero")}},
};

// By what the change file holds.
const Refusal kFiles[] = {
    {kRowSets, 2, "an index or a column first", {IntItem(4, 1), TextItem(5, "IP_LIST")}},
    {kRowSets, 2, "a value without its column", {kChange + kRow + TextItem(2, "10.0.0.9")}},
    {kRowSets, 2, "a second index without its table", {kChange + IntItem(4, 2)}},
    {kRowSets, 2, "two columns, one value", {kChange + kRow + TextItem(5, "IP_LIST") + TextItem(5, "IP_LIST")}},
    {kRowSets, 2, "two names", {kChange + TextItem(3, kIp) + TextItem(3, kIp)}},
    {kRowSets,
     2,
     "a tag that is in no set",
     {kChange + IntItem(0, 0), kChange + TextItem(1, kIp), kChange + TextItem(6, "D.")}},
    {kRowSets, 2, "a tag past the set", {kChange + TextItem(9, "x"), kChange + TextItem(0x0103, kIp)}},
    {kRowSets, 1, "no such table, an object", {kChange + Row("noSuchTable", 1), kChange + Row("webHttpPort", 1)}},
    {kRowSets,
     12,
     "no such column",
     {kChange + kRow + Column("ip_list", "white"), kChange + kRow + Column("", "white")}},
    {kRowSets, 2, "a text one too long", {kChange + kRow + Column("IP_LIST", std::string(32, 'w'))}},
    {kRowSets, 2, "an index of one byte", {kChange + TextItem(3, kIp) + RawItem(4, "\x01"s)}},
    {kRowSets, 2, "a name without its zero byte", {kChange + RawItem(3, kIp)}},
    {kRowSets, 2, "a column without its zero byte", {kChange + kRow + RawItem(5, "IP_LIST") + TextItem(2, "x")}},
    {kRowSets, 2, "a value without its zero byte", {kChange + kRow + TextItem(5, "IP_LIST") + RawItem(2, "white")}},
    {kRowSets, 2, "half an item header", {kChange + "\x03\x00"s}},
    {kRowSets, 2, "a value past the end", {kChange + kRow + TextItem(5, "IP_LIST") + "\x02\x00\x06\x00whit"s}},
    {kRowSets,
     16,
     "a table without set, later in the catalogue",
     {kChange + Row("node_traceTable", 1) + Column("Host", "h")}},
    {kRowSets, 16, "a row of a table without set, though nothing changes", {kChange + Row("FlowTable", 1)}},
};

void ExpectRefused(int (*handler)(MessageHeader*), const std::string& payload, int result, const std::string& why)
{
    platform.calls.clear();
    const auto rows = platform.rows;
    const Answer answer = Ask(handler, payload);
    EXPECT_EQ(answer.returned, result) << why;
    EXPECT_EQ(answer.payload, 8u) << "the result alone: " << why;
    Lines expected = {"reply " + std::to_string(result)};
    if (handler == ReqObjSet) expected.insert(expected.begin(), "notify 4");
    EXPECT_EQ(CallsButReads(), expected) << why;
    EXPECT_TRUE(platform.rows == rows) << why;
    EXPECT_TRUE(NothingLeft()) << why;
    EXPECT_EQ(FilesLike("/tmp/kobd-"), 0u) << why;
}
}  // namespace

TEST_F(RefusedRequests, ChangeNothing)
{
    ASSERT_TRUE(mkfifo("/tmp/pipe", 0600) == 0 || errno == EEXIST);
    std::filesystem::create_directory("/tmp/folder");
    PutRow(kIp, 1, {});
    PutRow("ledsTable", 1, {});
    for (const Refusal& c : kFiles)
        for (const std::string& items : c.payloads)
            for (auto* handler : c.handlers) ExpectRefused(handler, Changes(items), c.result, c.why);
    Changes(kChange);  // the file that refused requests name
    for (const Refusal& c : kRequests)
        for (const std::string& payload : c.payloads)
            for (auto* handler : c.handlers) ExpectRefused(handler, payload, c.result, c.why);
    EXPECT_EQ(Ask(ReqTableGet, kRow).result, 0) << "the row that the cases begin with is served";
    EXPECT_EQ(Ask(ReqTableSet, TextItem(7, kChangeFile)).result, 0) << "and the file; its tag is not looked at";
}

TEST_F(RefusedRequests, WithoutMemory)
{
    const std::string pairs = Pair("webHttpPort", "81") + Pair("webLanguage", "en") + Pair("webHttpPort", "82");
    for (const int32_t index : {1, 2}) PutRow("ledsTable", index, {});
    const std::string changes = Changes(Row("ledsTable", 1) + Column("Alias", "a") + Row("ledsTable", 2));
    const struct
    {
        Handlers handlers;
        std::string payload;
        int blocks, arrays;  // that can still be had
    } kCases[] = {
        {kSets, pairs, 0, -1},      {kSets, pairs, 1, -1},      {kSets, pairs, 2, -1},
        {kRowSets, changes, 0, -1}, {kRowSets, changes, 1, -1}, {kRowSets, changes, -1, 0},
    };
    for (const auto& c : kCases)
        for (auto* handler : c.handlers)
        {
            {
                const MemoryLeft left(c.blocks, c.arrays);
                ExpectRefused(handler, c.payload, 7, std::to_string(c.blocks) + " blocks left");
            }
            EXPECT_EQ(Ask(handler, c.payload).result, 0) << "the next request is served";
        }
}
}  // namespace kobd::test
