// Table get through its handler.
#include "tables/handlers.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
using namespace std::string_literals;

TEST_F(TableRequests, GetAnswersRowsInRequestOrder)
{
    PutRow("FwMacFilterTable", 0, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:5E"}});
    PutRow("FwMacFilterTable", 1, {{"MAC", "00:1A:2B:3C:4D:5F"}});
    PutRow("FlowTable", 4, {{"Noise", "-90"}, {"RetryCount", "4294967295"}});
    Ask(ReqTableGet,
        Row("FlowTable", 4) + Row("FwMacFilterTable", 1) + Row("FwMacFilterTable", 0) + TextItem(3, "ledsTable"));
    EXPECT_EQ(platform.reply.substr(sizeof(MessageHeader)),
              IntItem(0, 0) + RowItems("FlowTable", 4, {{"Noise", "-90"}, {"RetryCount", "4294967295"}}) +
                  RowItems("FwMacFilterTable", 1, {{"MAC", "00:1A:2B:3C:4D:5F"}}) +
                  RowItems("FwMacFilterTable", 0, {{"MAC_LIST", "white"}, {"MAC", "00:1A:2B:3C:4D:5E"}}));
}

TEST_F(TableRequests, GetShowsWhatTheListFilledAndItsOwnIndex)
{
    platform.rows["ledsTable"][3] = std::string("\x09\x00\x00\x00"s);  // a list that fills the index alone
    PutRow("FwIpFilterTable", 1, {{"DestIPAddress", std::string(63, 'x')}});
    const Answer answer = Ask(ReqTableGet, Row("FwIpFilterTable", 1) + Row("ledsTable", 3));
    EXPECT_EQ(platform.reply.substr(platform.reply.size() - RowItems("ledsTable", 9, {}).size()),
              RowItems("ledsTable", 9, {}))
        << "nothing of the row before shows through";
    EXPECT_EQ(answer.result, 0);
}

TEST_F(TableRequests, GetThatFailsAnswersTheResultAlone)
{
    const std::string good = Row("FwIpFilterTable", 1);
    const struct
    {
        int result;
        const char* why;
        std::vector<std::string> payloads;
    } kCases[] = {
        {2, "no item, a lone item header", {"", "\x03\x00\x00\x00"s}},
        {2, "an index first, an object's tag", {IntItem(4, 1), TextItem(1, "FwIpFilterTable") + IntItem(4, 1)}},
        {2, "an index without its table", {good + IntItem(4, 1)}},
        {2, "a name where an index belongs", {TextItem(3, "FwIpFilterTable") + good}},
        {2, "a column name", {good + TextItem(5, "IP_LIST")}},
        {1, "unknown name at the end, an object", {good + TextItem(3, "noSuchTable"), good + Row("webHttpPort", 1)}},
        {16, "no get operation, though no row is asked for", {good + TextItem(3, "FlowTable_24G")}},
        {13, "the list's code", {good + Row("FwIpFilterTable", 2)}},
        {2, "an index of two bytes", {good + TextItem(3, "FwIpFilterTable") + RawItem(4, "\x01\x00"s)}},
        {2, "a name without its zero byte", {good + RawItem(3, "FwIpFilterTable") + IntItem(4, 1)}},
        {2, "a byte too many, an item past the end", {good + "\x03"s, good + "\x03\x00\x10\x00leds\0"s}},
    };
    for (const auto& c : kCases)
        for (const std::string& payload : c.payloads)
        {
            ResetPlatform();
            PutRow("FwIpFilterTable", 1, {});
            const Answer answer = Ask(ReqTableGet, payload);
            EXPECT_EQ(answer.returned, c.result) << c.why;
            EXPECT_EQ(answer.payload, 8u) << c.why;
        }
    EXPECT_EQ(Ask(ReqTableGet, good).result, 0) << "the row that the cases begin with is served";
    EXPECT_EQ(Ask(ReqTableGet, TextItem(3, "FwIpFilterTable")).payload, 8u) << "a table alone is only checked";
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
    EXPECT_EQ(platform.reply.size(), sizeof(MessageHeader) + 8) << "no row, rather than some of them";
}
}  // namespace kobd::test
