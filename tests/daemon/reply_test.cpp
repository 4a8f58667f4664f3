// The reply frame, notifications and result texts.
#include "daemon/base/reply.h"

#include <gtest/gtest.h>

#include <climits>

#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
TEST(Reply, CarriesTheRequestsHeaderBytes)
{
    ResetPlatform();
    ExactMessage request("");
    const std::string header(reinterpret_cast<char*>(request.Header()), offsetof(MessageHeader, length));
    EXPECT_EQ(ReqUpdate(request.Header()), 0);
    EXPECT_EQ(platform.reply.substr(0, header.size()), header) << "the bus finds the sender by them";
}

TEST(Reply, SendErrorComesBeforeTheResult)
{
    ResetPlatform();
    platform.failures["MessageSendReply"] = 5;
    EXPECT_EQ(Ask(ReqUpdate, "").returned, 5);
    EXPECT_EQ(Ask(ReqObjGet, "").returned, 5) << "also before a refusal's code";
    EXPECT_EQ(platform.Calls("reply").size(), 2u) << "a failing send is not tried again";
}

TEST(Reply, RefusalAfterItemsCarriesTheResultAlone)
{
    ResetPlatform();
    ExactMessage request("");
    Reply reply(request.Header(), "test");
    EXPECT_TRUE(reply.PushText(kTagValue, "pushed before it failed"));
    EXPECT_EQ(reply.SendResult(kSystemError), kSystemError);
    EXPECT_EQ(platform.calls, std::vector<std::string>{"reply 4"});
}

TEST(KobdNotify, PayloadBound)
{
    for (const size_t size : {size_t{0}, size_t{980}, size_t{981}, size_t{70000}})
    {
        ResetPlatform();
        OutputCapture output;
        std::string payload;
        if (size > 0) payload = TextItem(kTagObjectName, std::string(size < 65000 ? size - 5 : 65000, 'n'));
        payload.resize(size);
        KobdNotify(4, payload);
        EXPECT_EQ(platform.calls.size(), size <= 980 ? 1u : 0u) << size;
        EXPECT_EQ(output.Text().empty(), size <= 980) << "a dropped event is told: " << size;
    }
}

TEST(KobdNotify, FullQueueIsLogged)
{
    ResetPlatform();
    platform.failures["MessageSend"] = kSendFailed;
    OutputCapture output;
    KobdNotify(4, {});
    EXPECT_NE(output.Text().find("notification 4 dropped"), std::string::npos);
}

TEST(ResultText, EndsOfTheTableAndNothingBeyond)
{
    EXPECT_STREQ(ResultText(0), "Success");
    EXPECT_STREQ(ResultText(16), "Method unavailable");
    EXPECT_STREQ(ResultText(30), "No value");
    for (const int code : {31, -1, INT_MAX, INT_MIN}) EXPECT_STREQ(ResultText(code), "Unknown result code") << code;
}
}  // namespace kobd::test
