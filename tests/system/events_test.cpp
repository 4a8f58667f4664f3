// Network events through the real daemon: what other modules receive, what another process reads in
// nvram, what the services were told; and the kobctl commands for all of that.
#include <sys/sysinfo.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>

#include "daemon/base/messages.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
class EventSystem : public DaemonTest
{
protected:
    void TearDown() override
    {
        for (BusClient& module : modules_) BusClientClose(&module);
    }

    void JoinAll()
    {
        for (size_t i = 0; i < std::size(kAll); ++i) ASSERT_EQ(BusClientJoin(&modules_[i], kAll[i]), 0);
    }

    // The next message of one of the joined modules in words: "771 3 2" is id, class and text.
    std::string Received(size_t module)
    {
        alignas(MessageHeader) static char bytes[kMessageMax];
        auto* message = reinterpret_cast<MessageHeader*>(bytes);
        if (BusClientReceive(&modules_[module], message, 500) != 0) return "nothing";
        const std::string text(bytes + sizeof(MessageHeader), message->length);
        return std::to_string(message->id) + " " + std::to_string(message->message_class) + " " + text;
    }

    // Waits until the daemon has handled what was sent before.
    static void Settle() { ASSERT_EQ(Request(kGet, {{1, "webHttpPort"}}).result, 0); }

    static void Event(const std::string& arguments)
    {
        const Ran run = RunLine("event " + arguments);
        ASSERT_EQ(run.status, 0) << run.errors;
        Settle();
    }

    static std::string Nvram(const std::string& key)
    {
        std::string value = RunLine("nvram get " + key).output;
        return value.substr(0, value.find('\n'));
    }

    // Journal lines since the last call.
    std::string NewJournal()
    {
        std::string text = RunLine("journal").output;
        std::string fresh = text.substr(journal_read_);
        journal_read_ = text.size();
        return fresh;
    }

    static constexpr uint32_t kAll[] = {kModuleNotify, kModuleServices, kModuleForward};
    BusClient modules_[std::size(kAll)];
    size_t journal_read_ = 0;
};

TEST_F(EventSystem, EthernetTakesOverAndGivesBack)
{
    JoinAll();
    NewJournal();
    Event("EthernetUp");
    EXPECT_EQ(Nvram("eth_status"), "1");
    EXPECT_EQ(Received(1), "799 3 ");

    Event("EvtEthernetIPAdd any");
    const std::string payload("any\0", 4);
    EXPECT_EQ(Received(0), "771 3 " + payload);
    EXPECT_EQ(Received(2), "771 3 " + payload);
    struct sysinfo system = {};
    sysinfo(&system);
    EXPECT_NEAR(atol(Nvram("connected_time").c_str()), static_cast<long>(system.uptime), 5);
    EXPECT_EQ(NewJournal(),
              "setDualwanNetSelectMode_lte manual_select\nChangeConnectTime_net 0\nupdateDdns 3\nftpUpgrade 2\n"
              "ntpUpdate 0\nvoipD2Vapp 2\n");

    Event("NetworkDown");
    Event("ApnIPChange 1");
    EXPECT_EQ(Nvram("lte_status"), "0");
    EXPECT_EQ(Received(1), "799 3 ");
    EXPECT_EQ(NewJournal(), "") << "Ethernet has the connection";

    ASSERT_EQ(RunLine("nvram set main_status=disconnected").status, 0);
    Event("EthernetDown");
    EXPECT_EQ(RunLine("nvram get connected_time eth_status").output, "connected_time=0\neth_status=0\n");
    EXPECT_EQ(Received(1), "799 3 ");
    EXPECT_EQ(NewJournal(), "setDualwanNetSelectMode_lte auto_select\nvoipD2Vapp 3\n");

    Event("NetworkDown");
    EXPECT_EQ(NewJournal(), "ChangeConnectTime_net 0\nkillFtpUpgradeDaemon\nvoipD2Vapp 3\nvolteD2Vapp 2\n");
    for (size_t module : {0, 2}) EXPECT_EQ(Received(module), "nothing");
}

TEST_F(EventSystem, AnAddressChangeGoesToWhoeverUsesTheInterfaceNow)
{
    JoinAll();
    Event("ApnIPChange 1");
    EXPECT_EQ(Received(0), "771 3 1" + std::string(1, '\0'));
    EXPECT_EQ(Received(2), "771 3 1" + std::string(1, '\0'));
    ASSERT_EQ(RunLine("nvram set wan_interface_snmp=RMNET_data3 wan_interface_tr069=none").status, 0);
    NewJournal();
    Event("ApnIPChange 4");
    EXPECT_EQ(Received(0), "nothing");
    EXPECT_EQ(Received(2), "771 3 4" + std::string(1, '\0'));
    Event("ApnIPChange 2");
    EXPECT_EQ(NewJournal(), "voipD2Vapp 2\nvolteD2Vapp 1\n");
}

TEST_F(EventSystem, ObjectsShowWhatLiesInNvram)
{
    ASSERT_EQ(RunLine("nvram set suppband='1 3' main_status=connecting wan_interface_voip=eth1").status, 0);
    EXPECT_EQ(RunLine("get lteSuppband lteMainStatusGet networkWanInterfaceCurrentVoip").output,
              "lteSuppband=1 3\nlteMainStatusGet=connecting\nnetworkWanInterfaceCurrentVoip=eth1\n");
    Event("EthernetUp");
    EXPECT_EQ(RunLine("get ethernetLinkStatus").output, "1\n");
    Restart();
    EXPECT_EQ(RunLine("get lteSuppband").output, "1 3\n") << "durable without a commit";
    EXPECT_EQ(Nvram("eth_status"), "1");
}

// Two events that write nvram in turn, a module that never reads.
TEST_F(EventSystem, AThousandEventsBesideAModuleThatNeverReads)
{
    BusClient& stuck = modules_[1];
    ASSERT_EQ(BusClientJoin(&stuck, kModuleServices), 0);
    BusClient client;
    ASSERT_EQ(BusClientOpen(&client), 0);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 1000; ++i)
    {
        MessageHeader event{};
        event.destination = kModuleKobd;
        event.message_class = 3;
        event.id = i % 2 == 0 ? 20 : 21;
        ASSERT_EQ(BusClientSend(&client, &event, 5000), 0) << i;
    }
    Settle();
    const auto spent = std::chrono::steady_clock::now() - start;
    BusClientClose(&client);
    printf("1000 events took %ld ms\n",
           static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(spent).count()));
    EXPECT_LT(spent, std::chrono::seconds(20)) << "100 ms for each dropped event would be over a minute";
    EXPECT_EQ(Nvram("lte_status"), "0") << "the last one";
    EXPECT_TRUE(LogSays("event 799 dropped, the queue of module 0x5A510006 is full"));
    int received = 0;
    while (Received(1) == "799 3 ") ++received;
    EXPECT_GE(received, 100) << "what fitted is still there";
    Event("NetworkUp");
    EXPECT_EQ(Received(1), "799 3 ") << "it reads again and is told again";
}

TEST_F(EventSystem, KobctlRefusesWrongWordsAndChangesNothing)
{
    const struct
    {
        const char* arguments;
        int status;
        const char* says;
    } kCases[] = {
        {"event NetworkSideways", 2, "there is no event NetworkSideways, the events are ApnChange, ApnIPChange"},
        {"event networkup", 2, "there is no event networkup"},
        {"event", 2, "event takes NAME [TEXT]; see kobctl help event"},
        {"nvram get no_such_key", 1, "nvram has no no_such_key"},
        {"nvram set eth_status", 2, "nvram set takes KEY=VALUE, not 'eth_status'"},
        {"nvram set eth_status=7 =8", 2, "nvram set takes KEY=VALUE, not '=8'"},
        {"nvram set 'a b=1'", 1, "nvram set a b: not set"},
        {"nvram", 2, "nvram takes one of get, set; see kobctl help nvram"},
        {"config list x", 2, "config takes one of get, set, not 'list'"},
        {"journal x", 2, "takes no 'x'"},
    };
    for (const auto& c : kCases)
    {
        const Ran run = RunLine(c.arguments);
        EXPECT_EQ(run.status, c.status) << c.arguments;
        EXPECT_NE(run.errors.find(c.says), std::string::npos) << c.arguments << ": " << run.errors;
    }
    EXPECT_EQ(Nvram("eth_status"), "0");
}

TEST_F(EventSystem, StoresAreServedWithoutADaemon)
{
    daemon_.End(SIGTERM);
    EXPECT_EQ(RunLine("config set cellular.roaming.enable=1 mine='a\"b=c'").status, 0);
    EXPECT_EQ(RunLine("config get mine cellular.roaming.enable cellular.roaming.status --json").output,
              "{\"mine\":\"a\\\"b=c\",\"cellular.roaming.enable\":\"1\",\"cellular.roaming.status\":\"Home\"}\n");
    EXPECT_EQ(RunLine("nvram get mine").status, 1) << "two stores";
    const std::string folder = "kobctl: no kobd answers; this is the state in /tmp/state\n";
    EXPECT_EQ(RunLine("nvram get suppband5g").errors, folder);
    ASSERT_EQ(system("rm /tmp/state/kobd.db*; echo damaged >/tmp/state/kobd.db"), 0);
    const Ran run = RunLine("nvram get suppband5g");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors,
              folder + "kobctl: nvram get: cannot read the database in /tmp/state: file is not a database\n");
    EXPECT_EQ(RunLine("event NetworkUp").status, 1) << "nobody to send it to";
}

TEST_F(EventSystem, WatchShowsEveryFreeModule)
{
    ASSERT_EQ(BusClientJoin(&modules_[2], kModuleForward), 0);
    ASSERT_EQ(system("(sleep 1; KOBD_STATE_DIR=/tmp/state " KOBD_EMULATOR
                     " /tmp/.programs/kobctl event EthernetUp; KOBD_STATE_DIR=/tmp/state " KOBD_EMULATOR
                     " /tmp/.programs/kobctl event ApnIPChange 1) >/dev/null &"),
              0);
    const Ran run = RunLine("watch --count 2");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "kobctl: not watching module 0x5A510009, another program has it\n");
    EXPECT_NE(run.output.find(" 0x5A510006 connection changed (id 799)\n"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find(" 0x5A510003 EvtApnIPChange (id 771) text=1\n"), std::string::npos) << run.output;

    for (size_t i : {0, 1}) ASSERT_EQ(BusClientJoin(&modules_[i], kAll[i]), 0);
    EXPECT_EQ(RunLine("watch --count 1").status, 1) << "all are taken";
}

TEST_F(EventSystem, WatchPrintsNothingThatSteersTheTerminal)
{
    ASSERT_EQ(system("(sleep 1; " KOBD_EMULATOR " /tmp/.programs/kobctl table add FwUrlFilterTable URL=a.example"
                     " --parent \"$(printf 'Device.\\033[2J')\") >/tmp/kobctl.added 2>&1 &"),
              0);
    const Ran run = RunLine("watch --count 1");
    EXPECT_NE(
        run.output.find(" row added under a parent (id 801) table=FwUrlFilterTable index=1 parent=Device.\\x1b[2J\n"),
        std::string::npos)
        << run.output;
}

TEST_F(EventSystem, JournalFollowsWhatIsWritten)
{
    // The daemon answers before its last hook has written its line.
    while (FileText("/tmp/state/journal").find("pemixAlg_init") == std::string::npos) usleep(1000);
    std::ofstream("/tmp/state/journal") << "old\nbeing writ";
    EXPECT_EQ(RunLine("journal").output, "old\n");
    ASSERT_EQ(system("(sleep 1; printf 'ten\\nnew\\n' >>/tmp/state/journal) &"), 0);
    EXPECT_EQ(RunLine("journal --follow --count 2 --json").output, "\"old\"\n\"being written\"\n");
    unlink("/tmp/state/journal");
    EXPECT_EQ(RunLine("journal").status, 1);
}
}  // namespace
}  // namespace kobd::test
