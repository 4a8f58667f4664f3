// Forwarded events, byte for byte. requests/events.txt has what every event calls.
#include <gtest/gtest.h>

#include "daemon/base/result.h"
#include "events/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
TEST(Forward, KeepsClassPayloadAndTheBytesOfTheBus)
{
    ResetPlatform();
    const std::string payload("\x02\0any\xFF", 6);
    ExactMessage message(payload);
    message.Header()->message_class = kClassEvent;
    message.Header()->id = kEvtEthernetIPAdd;
    std::string expected(reinterpret_cast<const char*>(message.Header()), sizeof(MessageHeader) + payload.size());
    platform.failures["MessageSend"] = kSendFailed;
    const OutputCapture output;
    EvtEthernetIPAdd(message.Header());
    ASSERT_EQ(platform.sent.size(), 2u);
    auto* header = reinterpret_cast<MessageHeader*>(expected.data());
    header->id = 771;
    header->destination = 0x5A510003;
    EXPECT_EQ(platform.sent[0], expected);
    header->destination = 0x5A510009;
    EXPECT_EQ(platform.sent[1], expected);
    EXPECT_NE(output.Text().find("event 771 dropped, the queue of module 0x5A510003 is full"), std::string::npos);
    EXPECT_NE(output.Text().find("event 771 dropped, the queue of module 0x5A510009 is full"), std::string::npos);
    g_ethWanConnected = 0;
}
}  // namespace kobd::test
