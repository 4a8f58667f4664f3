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

TEST(KobdNotify, DropsWhatIsTooLongAndTellsEveryDrop)
{
    const struct
    {
        size_t size;  // bytes of the payload
        int sent;     // what sending answers
        const char* line;
    } kCases[] = {
        {0, 0, ""},
        {980, 0, ""},
        {981, 0, "notification 4 of 981 bytes refused, at most 980 fit"},
        {70000, 0, "notification 4 of 70000 bytes refused, at most 980 fit"},
        {0, kSendFailed, "notification 4 dropped, the queue of module 0x5A510003 is full"},
    };
    for (const auto& c : kCases)
    {
        ResetPlatform();
        platform.failures["MessageSend"] = c.sent;
        OutputCapture output;
        KobdNotify(4, std::string(c.size, 'n'));
        EXPECT_EQ(platform.calls.size(), c.size <= 980 ? 1u : 0u) << c.size;
        EXPECT_TRUE(*c.line != 0 ? output.Text().ends_with(c.line) : output.Text().empty()) << output.Text();
    }
}

TEST(ResultText, EndsOfTheTableAndNothingBeyond)
{
    EXPECT_STREQ(ResultText(0), "Success");
    EXPECT_STREQ(ResultText(16), "Method unavailable");
    EXPECT_STREQ(ResultText(30), "No value");
    for (const int code : {31, -1, INT_MAX, INT_MIN}) EXPECT_STREQ(ResultText(code), "Unknown result code") << code;
}
}  // namespace kobd::test
