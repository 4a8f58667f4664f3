// Counts, adding and deleting rows, through their handlers.
#include "dictionary/name_index.h"
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
namespace
{
using namespace std::string_literals;

const std::string kLeds = TextItem(3, "ledsTable");

struct Refused
{
    int (*handler)(MessageHeader*);
    int result;
    const char* why;
    std::vector<std::string> payloads;
};

std::string ReplyItems() { return platform.reply.substr(sizeof(MessageHeader)); }
}  // namespace

TEST_F(TableRequests, CountsComeFromTheDictionaryAlone)
{
    Ask(ReqTableMaxRow, TextItem(3, "OnlineDeviceTable"));
    EXPECT_EQ(ReplyItems(), IntItem(0, 0) + IntItem(2, 255));
    Ask(ReqTableElementCount, TextItem(1, "FlowTable_5G"));
    EXPECT_EQ(ReplyItems(), IntItem(0, 0) + IntItem(2, 22)) << "the tag is not looked at";
    EXPECT_EQ(platform.calls.size(), 2u) << "two replies, no list was asked";
}

TEST_F(TableRequests, AddCommitsAnnouncesAnswers)
{
    Ask(ReqTableAdd, kLeds);
    EXPECT_EQ(ReplyItems(), IntItem(0, 0) + IntItem(4, 1));
    EXPECT_EQ(platform.calls, (Lines{"add ledsListAdd -1", "update_config", "notify 799 ledsTable 1", "reply 0 1"}));
}

TEST_F(TableRequests, SubAddSetsTheParentBetweenAddAndCommit)
{
    platform.failures["ledsListSetPPath"] = 13;
    Ask(REQSubTableAdd, kLeds + TextItem(2, "Device.LEDs."));
    EXPECT_EQ(platform.calls, (Lines{"add ledsListAdd -1", "path ledsListSetPPath 1 Device.LEDs.", "update_config",
                                     "notify 801 ledsTable 1 Device.LEDs.", "reply 0 1"}))
        << "what setPPath returns is not looked at";
}

TEST_F(TableRequests, DeleteCommitsAnnouncesAnswers)
{
    PutRow("ledsTable", -7, {});
    PutRow("ledsTable", 2, {});
    Ask(ReqTableDel, kLeds + IntItem(2, -7));
    EXPECT_EQ(platform.calls, (Lines{"del ledsListDel -7", "update_config", "notify 800 ledsTable -7", "reply 0"}));
    EXPECT_EQ(platform.rows["ledsTable"].size(), 1u);
}

TEST_F(TableRequests, RefusedBeforeAnyListIsCalled)
{
    const std::string path_of = TextItem(2, "Device.LEDs.");
    const std::string long_path = TextItem(2, std::string(980 - (4 + 10) - 8 - 4, 'p'));  // its zero byte is too much
    const Refused kCases[] = {
        {ReqTableMaxRow, 2, "no item, a lone item header", {"", RawItem(3, "")}},
        {ReqTableElementCount, 2, "a name without its zero byte", {RawItem(3, "ledsTable")}},
        {ReqTableElementCount, 2, "a byte too many", {kLeds + "\x01"s}},
        {ReqTableMaxRow, 1, "an object, wrong case", {TextItem(3, "webHttpPort"), TextItem(3, "ledstable")}},
        {ReqTableElementCount, 1, "the empty name", {TextItem(3, "")}},
        {ReqTableAdd, 2, "exactly four bytes", {"\x03\x00\x00\x00"s}},
        {ReqTableAdd, 1, "unknown", {TextItem(3, "noSuchTable")}},
        {ReqTableAdd, 16, "a table that only shows", {TextItem(3, "FlowTable")}},
        {ReqTableAdd, 2, "an item past the end, though not needed", {kLeds + "\x03\x00\xFF\x00"s}},
        {REQSubTableAdd, 2, "no parent path, one without its zero byte", {kLeds, kLeds + RawItem(2, "Device.LEDs.")}},
        {REQSubTableAdd, 16, "setPPath without add", {TextItem(3, "OnlineDeviceTable") + path_of}},
        {REQSubTableAdd, 16, "add without setPPath", {TextItem(3, "IpMacBindTable") + path_of}},
        {REQSubTableAdd, 2, "a path that no notification can carry", {kLeds + long_path}},
        {ReqTableDel, 2, "no index", {kLeds}},
        {ReqTableDel,
         2,
         "an index of two or five bytes",
         {kLeds + RawItem(4, "\1\0"s), kLeds + RawItem(4, "\1\0\0\0\0"s)}},
        {ReqTableDel, 16, "a table that only grows", {TextItem(3, "node_traceTable") + IntItem(4, 1)}},
        {ReqTableDel, 1, "items the wrong way round: the index is read as an unknown name", {IntItem(4, 1) + kLeds}},
    };
    for (const Refused& c : kCases)
        for (const std::string& payload : c.payloads)
        {
            ResetPlatform();
            const Answer answer = Ask(c.handler, payload);
            EXPECT_EQ(answer.returned, c.result) << c.why;
            EXPECT_EQ(answer.payload, 8u) << c.why;
            EXPECT_EQ(platform.calls, Lines{"reply " + std::to_string(c.result)}) << c.why;
        }
}

TEST_F(TableRequests, LongestParentPathThatCanBeAnnounced)
{
    const std::string path(980 - (4 + 10) - 8 - (4 + 1), 'p');
    Ask(REQSubTableAdd, kLeds + TextItem(6, path));
    EXPECT_EQ(platform.Calls("notify"), Lines{"notify 801 ledsTable 1 " + path});
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

TEST_F(TableRequests, FailingCommitAndNotificationsDoNotChangeTheAnswer)
{
    platform.failures["update_config"] = 14;
    platform.failures["MessageSend"] = 5;
    EXPECT_EQ(Ask(ReqTableAdd, kLeds).result, 0);
    EXPECT_EQ(Ask(ReqTableDel, kLeds + IntItem(4, 1)).result, 0);
}
}  // namespace kobd::test
