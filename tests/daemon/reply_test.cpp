// The reply frame, notifications and result texts.
#include "daemon/reply.h"

#include <gtest/gtest.h>

#include <climits>

#include "objects/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

extern "C" int kobd_send_message(...);

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
    EXPECT_EQ(reply.Refuse(kSystemError), kSystemError);
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

TEST(KobdSendMessage, DoesNothing)
{
    EXPECT_EQ(kobd_send_message(), 0);
    EXPECT_EQ(kobd_send_message(1, "two", 3.0), 0);
}

TEST(ResultText, EveryCodeHasItsText)
{
    const struct
    {
        int code;
        const char* text;
    } kCases[] = {
        {0, "Success"},
        {1, "Obj or table not found"},
        {2, "Invalid argument"},
        {3, "Message not running"},
        {4, "System error"},
        {5, "Message send failed"},
        {6, "Message Alloc failed"},
        {7, "Malloc failed"},
        {8, "Message wait reply timeout"},
        {9, "Message initialize failed"},
        {10, "Readonly"},
        {11, "Message buffer limit"},
        {12, "Element not found"},
        {13, "Table index not found"},
        {14, "Update failed"},
        {15, "Table is full"},
        {16, "Method unavailable"},
        {17, "Invoke failed"},
        {18, "Config not Expect"},
        {19, "Page not found"},
        {20, "User is not exists"},
        {21, "Old password is not match"},
        {22, "Wrong firmware, Please select again!"},
        {23, "This firmware is old and restricted to upgrade, Please select a new firmware to upgrade!"},
        {24, "This firmware is not customized FW,Please select again!"},
        {25, "Invalid configuration file, please select the correct configuration file!"},
        {26, "Firmware version too low!"},
        {27, "Firmware check error!"},
        {28, "WPS running"},
        {29, "TR069 has been disabled, please enable tr069 function first!"},
        {30, "No value"},
        {31, "Unknown result code"},
        {-1, "Unknown result code"},
        {INT_MAX, "Unknown result code"},
        {INT_MIN, "Unknown result code"},
    };
    for (const auto& c : kCases) EXPECT_STREQ(ResultText(c.code), c.text) << c.code;
}
}  // namespace kobd::test
