// Counts, get, add and delete of rows through their handlers. refused_requests_test.cpp has what they refuse.
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
const std::string kLeds = TextItem(3, "ledsTable");

std::string ReplyItems() { return platform.reply.substr(sizeof(MessageHeader)); }
}  // namespace

TEST_F(TableRequests, CallsAndReplies)
{
    const std::string long_path(980 - (4 + 10) - 8 - (4 + 1), 'p');
    const struct
    {
        int (*handler)(MessageHeader*);
        std::string payload;
        Lines calls;
        std::string reply;
        const char* why;
    } kCases[] = {
        {ReqTableMaxRow, TextItem(3, "OnlineDeviceTable"), {}, IntItem(2, 255), "from the dictionary alone"},
        {ReqTableElementCount, TextItem(1, "FlowTable_5G"), {}, IntItem(2, 22), "the tag is not looked at"},
        {ReqTableAdd,
         kLeds,
         {"add ledsListAdd -1", "update_config", "notify 799 ledsTable 3"},
         IntItem(4, 3),
         "in order"},
        {REQSubTableAdd,
         kLeds + TextItem(2, "Device.LEDs."),
         {"add ledsListAdd -1", "path ledsListSetPPath 4 Device.LEDs.", "update_config",
          "notify 801 ledsTable 4 Device.LEDs."},
         IntItem(4, 4),
         "what setPPath returns is not looked at"},
        {REQSubTableAdd,
         kLeds + TextItem(6, long_path),
         {"add ledsListAdd -1", "path ledsListSetPPath 5 " + long_path, "update_config",
          "notify 801 ledsTable 5 " + long_path},
         IntItem(4, 5),
         "the longest path that can be announced"},
        {ReqTableDel,
         kLeds + IntItem(2, -7),
         {"del ledsListDel -7", "update_config", "notify 800 ledsTable -7"},
         "",
         "-7"},
        {ReqTableGet, TextItem(3, "FwIpFilterTable"), {}, "", "a table alone is only checked"},
    };
    PutRow("ledsTable", -7, {});
    PutRow("ledsTable", 2, {});
    platform.failures = {{"ledsListSetPPath", 13}, {"update_config", 14}, {"MessageSend", 5}};  // change no answer
    for (const auto& c : kCases)
    {
        platform.calls.clear();
        EXPECT_EQ(Ask(c.handler, c.payload).returned, 0) << c.why;
        platform.calls.pop_back();  // the reply
        EXPECT_EQ(platform.calls, c.calls) << c.why;
        EXPECT_EQ(ReplyItems(), IntItem(0, 0) + c.reply) << c.why;
    }
    EXPECT_FALSE(platform.rows["ledsTable"].contains(-7));
}

TEST_F(TableRequests, WhatTheListRefusesIsNeitherCommittedNorAnnounced)
{
    const struct
    {
        const char* function;
        int code;
        int (*handler)(MessageHeader*);
        std::string second;
    } kCases[] = {
        {"ledsListAdd", 15, ReqTableAdd, ""},
        {"ledsListAdd", 15, REQSubTableAdd, TextItem(6, "Device.")},
        {"ledsListDel", 200, ReqTableDel, IntItem(4, 1)},  // no code of the table of results
        {"", 13, ReqTableDel, IntItem(4, 5)},              // no such row
    };
    for (const auto& c : kCases)
    {
        ResetPlatform();
        platform.failures[c.function] = c.code;
        const Answer answer = Ask(c.handler, kLeds + c.second);
        EXPECT_EQ(answer.returned, c.code);
        EXPECT_EQ(answer.payload, 8u);
        EXPECT_EQ(platform.calls.size(), 2u) << "the operation and the reply";
    }
}

TEST_F(TableRequests, GetAnswersRowsInRequestOrder)
{
    PutRow("FwMacFilterTable", 0, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:5E"}});
    PutRow("FlowTable", 4, {{"Noise", "-90"}, {"RetryCount", "4294967295"}});
    platform.rows["ledsTable"][3] = std::string("\x09\x00\x00\x00", 4);  // a list that fills the index alone
    Ask(ReqTableGet, Row("FlowTable", 4) + Row("FwMacFilterTable", 0) + Row("ledsTable", 3) + kLeds);
    EXPECT_EQ(ReplyItems(), IntItem(0, 0) + RowItems("FlowTable", 4, {{"Noise", "-90"}, {"RetryCount", "4294967295"}}) +
                                RowItems("FwMacFilterTable", 0, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:5E"}}) +
                                RowItems("ledsTable", 9, {}))
        << "nothing of the row before shows through, and the index is the list's";
}

TEST_F(TableRequests, GetNeverPassesTheReplysEnd)
{
    PutRow("FwIpFilterTable", 1, {});
    const std::string one = Row("FwIpFilterTable", 1);
    const size_t fits = (kPayloadMax - 8) / RowItems("FwIpFilterTable", 1, {}).size();
    std::string payload;
    for (size_t i = 0; i < fits; ++i) payload += one;
    EXPECT_EQ(Ask(ReqTableGet, payload).payload, 8 + fits * RowItems("FwIpFilterTable", 1, {}).size());
    EXPECT_EQ(Ask(ReqTableGet, payload + one).result, 11);
    EXPECT_EQ(ReplyItems(), IntItem(0, 11)) << "no row, rather than some of them";
}
}  // namespace kobd::test
