// The network events over the recording platform: every call with its arguments, in order, in both
// states of the Ethernet WAN flag.
#include <gtest/gtest.h>
#include <sys/sysinfo.h>

#include "daemon/base/result.h"
#include "events/handlers.h"
#include "tests/process_setup.h"
#include "tests/requests.h"

namespace kobd::test
{
namespace
{
using Calls = std::vector<std::string>;

class Events : public testing::Test
{
protected:
    void SetUp() override { ResetPlatform(); }
    void TearDown() override { g_ethWanConnected = 0; }

    // The calls of one event. The uptime among them is checked and replaced by the word UPTIME.
    static Calls Receive(int (*handler)(MessageHeader*), int flag, std::string_view payload = "")
    {
        g_ethWanConnected = flag;
        platform.calls.clear();
        ExactMessage message(payload);
        message.Header()->message_class = kClassEvent;
        message.Header()->id = kEvtApnIPChange;
        EXPECT_EQ(handler(message.Header()), 0);
        struct sysinfo system = {};
        sysinfo(&system);
        for (std::string& call : platform.calls)
            for (const long uptime : {system.uptime - 1, system.uptime})
                if (call == "nvram connected_time " + std::to_string(uptime)) call = "nvram connected_time UPTIME";
        return platform.calls;
    }
};

constexpr char kEvent799[] = "event 5a510006 799 0";
const char* const kFunctions[] = {"setDualwanNetSelectMode_lte",
                                  "nvram",
                                  "updateDdns",
                                  "MessageSend",
                                  "voipD2Vapp",
                                  "ftpUpgrade",
                                  "KobdEvtSend",
                                  "ChangeConnectTime_net",
                                  "volteD2Vapp",
                                  "ntpUpdate"};

TEST_F(Events, EveryEventInEveryState)
{
    const Calls services = {"updateDdns 3", "ftpUpgrade 2", "ntpUpdate 0"};
    const Calls address = {"set setDualwanNetSelectMode_lte manual_select",
                           "nvram connected_time UPTIME",
                           "ChangeConnectTime_net 0",
                           "updateDdns 3",
                           "ftpUpgrade 2",
                           "ntpUpdate 0",
                           "notify 771",
                           "send 5a510009 771",
                           "voipD2Vapp 2"};
    const Calls time_stays = {"read main_status", "nvram eth_status 0", kEvent799,
                              "set setDualwanNetSelectMode_lte auto_select", "voipD2Vapp 3"};
    Calls down = time_stays;
    down.insert(down.begin() + 1, "nvram connected_time 0");
    const Calls link = {"nvram eth_status 1", kEvent799};
    const Calls cellular_down = {"nvram lte_status 0",   kEvent799,      "ChangeConnectTime_net 0",
                                 "killFtpUpgradeDaemon", "voipD2Vapp 3", "volteD2Vapp 2"};
    const struct
    {
        const char* why;
        int (*handler)(MessageHeader*);
        int flag;  // Ethernet WAN before
        Calls calls;
        int flag_after;
        const char* main_status = "";
    } kCases[] = {
        {"first address", EvtEthernetIPAdd, 0, address, 1},
        {"renewed address", EvtEthernetIPAdd, 1, address, 1},
        {"address lost", EvtEthernetIPDel, 1, {"voipD2Vapp 3"}, 1},
        {"address lost that was none", EvtEthernetIPDel, 0, {"voipD2Vapp 3"}, 0},
        {"link up", EvtEthernetUp, 0, link, 0},
        {"link up again", EvtEthernetUp, 1, link, 1},
        {"link down with an address", EvtEthernetDown, 1, down, 0},
        {"link down without one", EvtEthernetDown, 0, down, 0},
        {"the time of a connected cellular network runs on", EvtEthernetDown, 1, time_stays, 0, "connected"},
        {"another word", EvtEthernetDown, 1, down, 0, "Connected"},
        {"a longer word", EvtEthernetDown, 1, down, 0, "connected "},
        {"a word that begins like it", EvtEthernetDown, 1, down, 0, "connecting"},
        {"cellular up", EvtNetworkUp, 0, {"nvram lte_status 1", kEvent799, "ChangeConnectTime_net 1"}, 0},
        {"cellular up behind Ethernet", EvtNetworkUp, 1, {"nvram lte_status 1", kEvent799}, 1},
        {"cellular down", EvtNetworkDown, 0, cellular_down, 0},
        {"cellular down behind Ethernet", EvtNetworkDown, 1, {"nvram lte_status 0", kEvent799}, 1},
        {"APN changed", EvtApnChange, 0, services, 0},
        {"APN changed behind Ethernet", EvtApnChange, 1, {}, 1},
        {"P-CSCF", EvtPCscfIPChange, 0, {"volteD2Vapp 1"}, 0},
        {"P-CSCF behind Ethernet", EvtPCscfIPChange, 1, {"volteD2Vapp 1"}, 1},
    };
    for (const int failure : {0, 3})  // a failing platform call stops nothing
    {
        for (const char* function : kFunctions) platform.failures[function] = failure;
        for (const auto& c : kCases)
        {
            platform.nvram = {{"main_status", c.main_status}};
            EXPECT_EQ(Receive(c.handler, c.flag), c.calls) << c.why;
            EXPECT_EQ(g_ethWanConnected, c.flag_after) << c.why;
        }
    }
}

TEST_F(Events, ForwardedMessagesKeepClassPayloadAndTheBytesOfTheBus)
{
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
}

TEST_F(Events, ApnAddressChangeReachesWhoUsesTheInterface)
{
    const Calls all = {"notify 771 2", "voipD2Vapp 2", "volteD2Vapp 1", "send 5a510009 771 2"};
    const Calls third = {"notify 771 3", "voipD2Vapp 2", "send 5a510009 771 3"};
    const struct
    {
        std::string payload;
        const char *tr069, *voip, *snmp;
        Calls calls;
        const char* why;
    } kCases[] = {
        {"2", "wan2", "wan2", "wan2", all, "all three use it"},
        {"3", "WAN3", "Wan3", "wAN3", third, "case does not count"},
        {"1", "wan1", "wan2", "wan2", {"notify 771 1"}, "the agent alone"},
        {"1", "wan2", "wan1", "wan2", {"voipD2Vapp 2"}, "voice alone"},
        {"4", "wan2", "", "wan4", {"send 5a510009 771 4"}, "SNMP alone"},
        {"2", "wan1", "wan3", "", {"volteD2Vapp 1"}, "the IMS profile, used by none"},
        {"1", "wan", "wan10", "wan1 ", {}, "beginning of a name"},
    };
    const OutputCapture output;
    for (const auto& c : kCases)
    {
        platform.values = {{"tr069", c.tr069}, {"voip", c.voip}, {"snmp", c.snmp}};
        EXPECT_EQ(Receive(EvtApnIPChange, 0, c.payload), c.calls) << c.why;
        EXPECT_EQ(Receive(EvtApnIPChange, 1, c.payload), Calls()) << "behind Ethernet: " << c.why;
    }
}

TEST_F(Events, ApnIndexIsReadFromAnyPayload)
{
    platform.values = {{"tr069", "wan1"}};
    const struct
    {
        int index;
        const char* why;
        std::vector<std::string> payloads;
    } kCases[] = {
        {1, "no zero byte ends it, or one ends the text", {"1", std::string("1\0002", 3)}},
        {1, "as atoi reads", {" \t\n+1x", "0001", std::string(8000, ' ') + "1"}},
        {0, "no number", {"", std::string("\0001", 2), "0", "abc", TextItem(kTagValue, "1")}},
        {5, "one above", {"5"}},
        {-1, "negative", {"-1"}},
        {2147483647, "does not fit 32 bits", {"2147483648", "4294967297", std::string(8148, '9')}},
        {-2147483647 - 1, "does not fit 64 bits", {"-99999999999999999999"}},
    };
    for (const auto& c : kCases)
        for (const std::string& payload : c.payloads)
        {
            const OutputCapture output;
            EXPECT_EQ(Receive(EvtApnIPChange, 0, payload).size(), c.index == 1 ? 1u : 0u) << c.why;
            const std::string log = output.Text();
            EXPECT_TRUE(log.ends_with("]: EvtApnIPChange index " + std::to_string(c.index) + " \n")) << c.why << log;
            EXPECT_NE(log.find(" EvtApnIPChange["), std::string::npos);
        }
}
}  // namespace
}  // namespace kobd::test
