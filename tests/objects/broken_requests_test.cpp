// Every cut and many random changes of valid requests and change files are answered, change nothing
// when refused, and touch no byte outside the message or the file (the sanitizers watch exactly
// sized blocks).
#include <unistd.h>

#include <random>
#include <set>

#include "objects/handlers.h"
#include "platform/kobd_exports.h"
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
using BrokenRequests = TableRequests;

constexpr unsigned kSeed = 20240613;
constexpr int kMutations = 1500;

const std::string kObjectSet = Pair("webHttpPort", "8080") + Pair("webLanguage", "en") + Pair("webHttpEnable", "1");
const std::string kTableChanges = Row("FwIpFilterTable", 1) + Column("DestIPAddress", "10.0.0.2") +
                                  Column("IP_LIST", "white") + Row("ledsTable", 2) +
                                  Column("RelativeXPosition", "4294967295");
const struct
{
    int (*handler)(MessageHeader*);
    std::string valid;
} kRequests[] = {
    {ReqObjGet, Name("webLanguage") + Name("IMEI") + Name("smsRecord") + Name("FlowTable")},
    {ReqObjSet, kObjectSet},
    {ReqObjSetSilent, kObjectSet},
    {ReqTableMaxRow, TextItem(3, "ledsTable")},
    {ReqTableElementCount, TextItem(3, "ledsTable")},
    {ReqTableAdd, TextItem(3, "ledsTable")},
    {REQSubTableAdd, TextItem(3, "ledsTable") + TextItem(6, "Device.LEDs.")},
    {ReqTableDel, TextItem(3, "ledsTable") + IntItem(4, 2)},
    {ReqTableGet, Row("ledsTable", 2) + Row("FwIpFilterTable", 1)},
    {ReqTableDump, TextItem(3, "ledsTable") + TextItem(3, "FwIpFilterTable")},
};

// Rows and a value that requests find; asked afresh for every case.
void Prepare()
{
    ResetPlatform();
    platform.values["WebHttpPortGet"] = "80";
    PutRow("FwIpFilterTable", 1, {{"DestIPAddress", "10.0.0.1"}});
    PutRow("ledsTable", 2, {{"Name", "power"}});
}

// The results of a daemon that has looked at the request itself.
void ExpectOwnResult(int result, const std::string& what)
{
    EXPECT_TRUE(std::set({0, 1, 2, 10, 11, 12, 13, 16}).contains(result)) << result << what;
}

void ExpectAnsweredWhole(int (*handler)(MessageHeader*), const std::string& payload, const std::string& what)
{
    OutputCapture output;
    Prepare();
    const auto rows = platform.rows;
    const Answer answer = Ask(handler, payload);
    EXPECT_EQ(platform.Calls("reply").size(), 1u) << what;
    ExpectOwnResult(answer.result, what);
    char value[2048];
    EXPECT_EQ(SnapshotGet("webHttpPort", value), 0);
    EXPECT_STREQ(value, "80") << "staged value left behind: " << what;
    const bool sets = handler == ReqObjSet || handler == ReqObjSetSilent;
    EXPECT_EQ(platform.Calls("set ").empty(), !sets || answer.result != 0) << what;
    if (handler == ReqTableDump && answer.result == 0) unlink(answer.texts.at(0).c_str());
    if (answer.result == 0) return;
    EXPECT_EQ(answer.payload, 8u) << what;
    EXPECT_EQ(platform.rows, rows) << what;
    for (const char* call : {"notify 2", "notify 3", "notify 7", "notify 8", "update"})
        EXPECT_TRUE(platform.Calls(call).empty()) << what;
}
}  // namespace

TEST_F(BrokenRequests, EveryCutOfAMessage)
{
    for (const auto& request : kRequests)
        for (size_t cut = 0; cut < request.valid.size(); ++cut)
            ExpectAnsweredWhole(request.handler, request.valid.substr(0, cut), "cut at " + std::to_string(cut));
}

TEST_F(BrokenRequests, RandomChangesOfAMessage)
{
    std::mt19937 random(kSeed);
    for (const auto& request : kRequests)
        for (int number = 0; number < kMutations; ++number)
            ExpectAnsweredWhole(request.handler, Mutated(request.valid, random), "change " + std::to_string(number));
}

TEST_F(BrokenRequests, RandomChangesOfAChangeFile)
{
    std::mt19937 random(kSeed);
    for (int number = 0; number < kMutations; ++number)
    {
        const std::string path = Changes(Mutated(kTableChanges, random));
        OutputCapture output;
        Prepare();
        const auto rows = platform.rows;
        const Answer answer = Ask(ReqTableSet, path);
        ExpectOwnResult(answer.result, " of change " + std::to_string(number));
        EXPECT_EQ(platform.Calls("update_config").size(), answer.result == 0 ? 1u : 0u) << number;
        // 13 is the list's answer to a row it does not know, rows before it are stored then.
        EXPECT_TRUE(answer.result == 0 || answer.result == 13 || platform.rows == rows) << number;
        for (const TableDef& table : kTables) EXPECT_EQ(table.pending->first, nullptr) << number;
    }
}
}  // namespace kobd::test
