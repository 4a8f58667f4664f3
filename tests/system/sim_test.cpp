// The simulator through the real daemon and kobctl: failures, rows that are never written, what moves by itself, and
// scenarios.
#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "client/dictionary/dictionary.h"
#include "daemon/base/messages.h"
#include "tests/items.h"
#include "tests/joined.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"
#include "tests/system/object_samples.h"

namespace kobd::test
{
namespace
{
class Simulator : public DaemonTest
{
protected:
    void TearDown() override { BusClientClose(&listener_); }

    // The ids of the announcements since the last call.
    std::string Announced()
    {
        alignas(MessageHeader) static char bytes[kMessageMax];
        auto* message = reinterpret_cast<MessageHeader*>(bytes);
        std::string ids;
        while (BusClientReceive(&listener_, message, 0) == 0) ids += std::to_string(message->id) + " ";
        return ids;
    }

    static void Sim(const std::string& line)
    {
        const Ran ran = RunLine("sim " + line);
        EXPECT_EQ(ran.status, 0) << line << ": " << ran.errors;
    }

    static std::string Export() { return RunLine("export").output; }

    static void WriteScenario(const std::string& text) { std::ofstream("/tmp/scenario.conf") << text; }

    BusClient listener_;
};

// The same with a router that moves.
class MovingRouter : public Simulator
{
protected:
    void SetUp() override
    {
        setenv("KOBD_STILL", "0", 1);
        Simulator::SetUp();
    }
    void TearDown() override
    {
        Simulator::TearDown();
        setenv("KOBD_STILL", "1", 1);
    }

    static uint64_t Number(const std::string& name) { return strtoull(GetObject(name).c_str(), nullptr, 10); }
};

TEST_F(Simulator, ASetThatTheRouterFailsStopsThereWithoutACommit)
{
    ASSERT_EQ(BusClientJoin(&listener_, kModuleNotify), 0);
    int code = 3;
    int tried = 0;
    for (size_t i = 0; i < kObjectRows.size() && tried < 50; i += 11)
    {
        const ObjectRow& object = kObjectRows[i];
        const std::string good = SamplesFor(object).good;
        if (object.access != Access::kReadWrite || object.shared || object.validator != nullptr ||
            good == GetObject(object.name))
            continue;
        ++tried;
        code = code % 30 + 3;  // also those that checks answer
        const std::string before = GetObject(object.name);
        const std::string language = tried % 2 == 0 ? "zh" : "pt";
        Sim("fail " + std::string(object.name) + " set --times 1 --code " + std::to_string(code));
        static_cast<void>(Announced());
        const std::string items =
            Pair("webLanguage", language) + Pair(object.name, good) + Pair("webHttpsPort", "4433");
        EXPECT_EQ(RequestItems(kReqObjSet, items).result, code) << object.name;
        EXPECT_EQ(Announced(), "2 4 ") << object.name << ": the pair before it, and the end";
        EXPECT_EQ(GetObject("webLanguage"), language) << "the pair before it stays";
        EXPECT_EQ(GetObject(object.name), before);
        EXPECT_NE(GetObject("webHttpsPort"), "4433") << "the pair behind it is not reached";
        EXPECT_EQ(StateSql("/tmp/state", "SELECT * FROM objects"), "") << "nothing was committed";
        Sim("fail " + std::string(object.name) + " get --times 1");
        EXPECT_EQ(Request(kReqObjGet, {{1, object.name}, {1, "IMEI"}}).texts.size(), 2u)
            << object.name << " is left out";
        EXPECT_EQ(GetObject(object.name), before) << "once was enough";
    }
    EXPECT_EQ(tried, 50);
}

TEST_F(Simulator, TableOperationsAnswerTheirFailureAndChangeNothing)
{
    ASSERT_EQ(BusClientJoin(&listener_, kModuleNotify), 0);
    int tried = 0;
    for (const TableRow& table : kTableRows)
    {
        if (table.daemon_list || !table.Has(Operation::kAdd) || !table.Has(Operation::kSet) || *table.validator != 0 ||
            tried == 20)
            continue;
        const std::string name = table.name;
        const int code = 3 + tried++;
        Sim("row " + name + " add");
        const std::string dumped = RunLine("table dump --json " + name).output;
        const size_t at = dumped.rfind("\"index\":");
        const int index = atoi(dumped.c_str() + at + 8);
        for (const char* operation : {"add", "del", "get", "set"})
            Sim("fail " + name + " " + operation + " --times 1 --code " + std::to_string(code));
        std::ofstream("/tmp/change.conf", std::ios::binary)
            << Row(name, index) << Column(table.layout.columns[0].name, "1");
        EXPECT_EQ(Request(kReqTableAdd, {{kTagTableName, name}}).result, code) << name;
        EXPECT_EQ(RequestItems(kReqTableDel, Row(name, index)).result, code) << name;
        EXPECT_EQ(RequestItems(kReqTableGet, Row(name, index)).result, code) << name;
        EXPECT_EQ(Request(kReqTableSet, {{kTagValue, "/tmp/change.conf"}}).result, code) << name;
        EXPECT_EQ(RunLine("table dump --json " + name).output, dumped) << name;
        Sim("fail " + name + " next --times 1 --code " + std::to_string(code));
        EXPECT_NE(RunLine("table dump " + name).errors.find("could not read all rows"), std::string::npos) << name;
    }
    EXPECT_EQ(tried, 20);
    EXPECT_EQ(Announced().find("799"), std::string::npos);
    EXPECT_EQ(StateSql("/tmp/state", "SELECT * FROM lists"), "");
}

// Rows and values that are only shown never reach the database, whatever is committed beside them.
TEST_F(Simulator, NothingSimulatedIsWritten)
{
    ASSERT_EQ(RunLine("table add FwIpFilterTable DestIPAddress=10.0.0.1 IP_LIST=real").status, 0);
    const std::string before = Export();
    Sim("set webHttpPort=8081 RSRP=-1 ethernetLinkStatus=1");
    Sim("row FwIpFilterTable add IP_LIST=shown");
    Sim("row FwIpFilterTable set 1 DestIPAddress=10.0.0.9");
    Sim("row DnsClientTable del 1");
    Sim("row ApnConfigTable set 0 ApnEnable=7 ApnName=shown");
    EXPECT_NE(Export(), before);
    EXPECT_EQ(GetObject("webHttpPort"), "8081");
    // Each is committed in part: another column, another row of a list that was the factory's, another value.
    ASSERT_EQ(RunLine("table set FwIpFilterTable 1 IP_LIST=changed").status, 0);
    ASSERT_EQ(RunLine("table set DnsClientTable 2 DnsServer=198.51.100.1 ApnConfigTable 0 MTU=1400").status, 0);
    ASSERT_EQ(SetObject("webLanguage", "zh"), 0);
    const std::string added = RunLine("table add FwIpFilterTable IP_LIST=second").output;
    const std::string shown = RunLine("table get FwIpFilterTable 1 2 --json").output;
    EXPECT_NE(shown.find("10.0.0.9"), std::string::npos) << "still simulated";
    EXPECT_NE(shown.find("changed"), std::string::npos);
    EXPECT_EQ(added, "3\n") << "2 is taken as long as it is shown";
    ASSERT_EQ(RunLine("table set FwIpFilterTable 1 DestIPAddress=10.0.0.2").status, 0);
    Sim("clear");
    const std::string after = Export();
    const auto expect = [&](const char* text, bool there)
    { EXPECT_EQ(after.find(text) != std::string::npos, there) << text; };
    expect("IP_LIST=changed", true);
    expect("DestIPAddress=10.0.0.2", true);
    expect("IP_LIST=second", true);
    expect("DnsServer=192.0.2.53", true);
    expect("MTU=1400", true);
    expect("ApnName=internet", true);
    expect("shown", false);
    expect("webHttpPort=80\n", true);
    EXPECT_EQ(RunLine("nvram get apn1_enable").output, "1\n");
    EXPECT_EQ(StateSql("/tmp/state", "SELECT last FROM lists WHERE name='FwIpFilterTable'"), "3\n");
    Restart();
    EXPECT_EQ(Export(), after);
    // A row that only the simulator has becomes real when it is set; one that is deleted is gone.
    Sim("row FwIpFilterTable add IP_LIST=third");
    ASSERT_EQ(RunLine("table set FwIpFilterTable 4 DestIPAddress=10.0.0.4").status, 0);
    Sim("row FwIpFilterTable set 1 IP_LIST=shown");
    ASSERT_EQ(RunLine("table del FwIpFilterTable 1").status, 0);
    Sim("clear");
    const std::string real = Export();
    EXPECT_NE(real.find("IP_LIST=third"), std::string::npos);
    EXPECT_EQ(real.find("IP_LIST=changed"), std::string::npos);
    Restart();
    EXPECT_EQ(Export(), real);
}

TEST_F(Simulator, AnnouncesOnlyWhenAsked)
{
    ASSERT_EQ(BusClientJoin(&listener_, kModuleNotify), 0);
    Sim("set RSRP=-1");
    Sim("row DnsClientTable add");
    EXPECT_EQ(Announced(), "");
    Sim("set RSRP=-2 RSRQ=-3 --announce");
    EXPECT_EQ(Announced(), "2 2 4 ");
}

TEST_F(Simulator, WaitsAsOftenAsItIsTold)
{
    const auto seconds = []
    {
        timespec now = {};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
    };
    Sim("slow webHttpPort 400 --times 1");
    const double start = seconds();
    EXPECT_EQ(GetObject("webHttpPort"), "80");
    EXPECT_GE(seconds() - start, 0.4);
    EXPECT_EQ(RunLine("sim list").output, "");
}

TEST_F(Simulator, ListsMoreThanAMessageHolds)
{
    for (const char* name : {"RSRP", "RSRQ", "SINR", "RSSI", "IMEI", "TAC"})
        Sim(std::string("set ") + name + "=" + std::string(2047, 'x'));
    const std::string list = RunLine("sim list").output;
    EXPECT_EQ(std::ranges::count(list, '\n'), 6);
    EXPECT_EQ(list.size(), 6 * (2047 + 6) - 1u);
    EXPECT_NE(RunLine("sim set IMEI=" + std::string(2048, 'x')).status, 0);
}

TEST(SimulatorElsewhere, ARouterDoesNotAnswer)
{
    SKIP_WITHOUT_NAMESPACES();
    static constexpr MsgHandler kNone[] = {{nullptr, 0, nullptr}};
    MessageProccessRegister(kNone);
    ASSERT_EQ(Join(kModuleKobd), 0);
    EXPECT_EQ(RunLine("sim clear --timeout 0.2").errors,
              "kobctl: sim: no answer within 200 ms; this router is not the imitated one, or it is busy: Message wait "
              "reply timeout (8)\n");
    MessageDestroy();
}

TEST_F(MovingRouter, CountsWhileItsNetworkIsUp)
{
    const auto start = Number("UpTime");
    const auto received = Number("networkWanRecvBytes");
    const std::string flow = RunLine("table dump FlowTable --json").output;
    const std::string exported = Export();
    sleep(3);
    EXPECT_GE(Number("UpTime"), start + 3);
    EXPECT_LE(Number("UpTime"), start + 20);
    EXPECT_GT(Number("networkWanRecvBytes"), received + 3 * 20000);
    EXPECT_NE(RunLine("table dump FlowTable --json").output, flow);
    EXPECT_EQ(Export(), exported) << "neither the clock nor a counter is a setting";
    char today[32];
    const time_t now = time(nullptr);
    strftime(today, sizeof today, "%Y-%m-%dT%H", localtime(&now));
    EXPECT_TRUE(GetObject("CurrentDateTime").starts_with(today)) << GetObject("CurrentDateTime");
    ASSERT_EQ(SetObject("CurrentDateTime", "2031-02-03T04:05:06"), 0);
    EXPECT_TRUE(GetObject("CurrentDateTime").starts_with("2031-02-03T04:05:")) << "the clock goes on from there";

    ASSERT_EQ(RunLine("event NetworkDown").status, 0);
    for (const auto& [name, value] : {std::pair{"SIMWANIPv4", "0.0.0.0"},
                                      {"RSRP", "-"},
                                      {"CellularStatus", "Down"},
                                      {"InternetStatus", "0"},
                                      {"WANIP", "0.0.0.0"}})
        EXPECT_EQ(GetObject(name), value) << name;
    ASSERT_EQ(SetObject("WANIP", "198.51.100.7"), 0);
    EXPECT_EQ(GetObject("WANIP"), "198.51.100.7") << "what was set is read";
    const auto stopped = Number("networkWanRecvBytes");
    sleep(2);
    EXPECT_EQ(Number("networkWanRecvBytes"), stopped);
    EXPECT_LE(Number("CellularLastChange"), 20u);
    ASSERT_EQ(RunLine("event EthernetUp").status, 0);
    EXPECT_EQ(GetObject("InternetStatus"), "1");
    EXPECT_EQ(GetObject("ethernetConnectionStatus"), "connected");
    EXPECT_EQ(GetObject("RSRP"), "-");
    ASSERT_EQ(RunLine("event EthernetDown").status, 0);
    EXPECT_EQ(GetObject("ethernetConnectionStatus"), "disconnected");
    ASSERT_EQ(RunLine("event NetworkUp").status, 0);
    EXPECT_EQ(GetObject("RSRP"), "-95");
    EXPECT_EQ(GetObject("SIMWANIPv4"), "10.64.23.118");
    EXPECT_EQ(StateSql("/tmp/state", "SELECT name FROM objects"), "CurrentDateTime\nWANIP\n");
}

// A counter that is read and written back with its row is not stored; one that is set counts from there.
TEST_F(MovingRouter, ACounterThatComesBackIsNotStored)
{
    sleep(2);
    ASSERT_EQ(RunLine("table set node_597Table 1 ErrorsSent=5").status, 0);
    const std::string stored =
        "SELECT field, value FROM cells WHERE list='node_597Table' AND number=1 AND field IN "
        "('BytesSent', 'ErrorsSent') ORDER BY field";
    EXPECT_EQ(StateSql("/tmp/state", stored), "BytesSent|2265813776\nErrorsSent|5\n");
    ASSERT_EQ(RunLine("table set node_597Table 1 BytesSent=1000000").status, 0);
    EXPECT_EQ(StateSql("/tmp/state", stored), "BytesSent|1000000\nErrorsSent|5\n");
    const std::string row = RunLine("table get node_597Table 1 --json").output;
    EXPECT_NE(row.find("\"BytesSent\":1000"), std::string::npos) << row;
}

// Runs a scenario and collects the different values that a client sees meanwhile, one after the other.
std::string SeenWhile(const std::string& scenario, const std::string& object, int speed)
{
    const pid_t process = StartKobctl("sim run " + scenario + " --speed " + std::to_string(speed));
    std::string seen;
    std::string last;
    for (siginfo_t ended = {}; ended.si_pid == 0; usleep(2000))
    {
        waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT);
        const std::string value = GetObject(object);
        if (value != last) seen += (last = value) + " ";
    }
    const Ran ran = ReadKobctl(process);
    EXPECT_EQ(ran.status, 0) << scenario << ": " << ran.errors;
    return seen;
}

struct Played
{
    const char* scenario;
    const char* object;
    const char* seen;  // the values in their order
};

constexpr int kSpeed = 10;  // times as fast as it is meant to be: a busy machine sees what lasts a fifth of a second

TEST_F(MovingRouter, ShippedScenariosAreSeenAndLeaveNothing)
{
    const std::string before = Export();
    for (const auto& [scenario, object, seen] :
         {Played{"sim-out", "SIMstatus", "ready absent initializing ready "},
          Played{"apn-drop", "SIMWANIPv4", "10.64.23.118 0.0.0.0 10.64.99.7 10.64.23.118 "},
          Played{"devices-come-and-go", "OnlineTableNumberOfEntries", "7 8 9 8 7 8 9 8 7 8 9 8 7 "},
          Played{"wan-flapping", "ethernetConnectionStatus",
                 "disconnected connected disconnected connected disconnected connected disconnected connected "
                 "disconnected connected disconnected "},
          Played{"slow-platform", "RSRQ", "-10 "}})
    {
        EXPECT_EQ(SeenWhile(scenario, object, kSpeed), seen) << scenario;
        EXPECT_EQ(Export(), before) << scenario;
    }
    EXPECT_GE(SeenWhile("table-full", "UrlFilterNumberOfEntries", kSpeed).size(), 50u);
    EXPECT_EQ(Export(), before);
}

TEST_F(MovingRouter, TheSignalFadesAndComesBack)
{
    const std::string before = Export();
    for (const std::string scenario : {"signal-fade", "bad-day"})
    {
        std::istringstream seen(SeenWhile(scenario, "RSRP", kSpeed));
        std::vector<int> values;
        size_t without = 0;
        for (std::string value; seen >> value;)
        {
            if (value == "-") without = values.size();
            if (value != "-" && value != "nothing") values.push_back(atoi(value.c_str()));
        }
        ASSERT_GT(without, 3u) << scenario;
        ASSERT_GT(values.size(), without + 3) << scenario;
        for (size_t i = 1; i + 1 < without; ++i) EXPECT_LT(values[i], values[i - 1]) << scenario << " falls";
        for (size_t i = without + 2; i < values.size(); ++i)
            EXPECT_GT(values[i], values[i - 1]) << scenario << " rises";
        EXPECT_EQ(values.back(), -95) << scenario;
        EXPECT_EQ(Export(), before) << scenario;
    }
    EXPECT_EQ(RunLine("sim list").output, "cellular network is up\nethernet network is down\n");
}

TEST_F(MovingRouter, AStoppedScenarioLeavesTheRouterAsItWas)
{
    WriteScenario("set IMEI=1\nrow DnsClientTable del 1\nevent NetworkDown\nwait 60s\n");
    const std::string before = Export();
    const pid_t process = StartKobctl("sim run /tmp/scenario.conf");
    for (int look = 0; look < 500 && GetObject("RSRP") != "-"; ++look) usleep(10000);
    EXPECT_EQ(GetObject("IMEI"), "1");
    kill(process, SIGINT);
    const Ran ran = ReadKobctl(process);
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.errors,
              "kobctl: sim run: stopped in line 4 of /tmp/scenario.conf; what it has simulated is cleared\n");
    EXPECT_EQ(GetObject("RSRP"), "-95");
    EXPECT_EQ(GetObject("IMEI"), "001010123456780");
    EXPECT_EQ(Export(), before);
}

TEST_F(Simulator, MistakesAreNamedBeforeAnythingRuns)
{
    WriteScenario(
        "# wrong in most lines\nset RSRP=1\nat 5s wait 3s\nat 2s set RSRP=1\nfoo\nrepeat 0\nover 3 RSRP 1..2\n"
        "over 3s RSRP 1-2\nset nosuch=2\nevent Foo\nend\nend\nrepeat 2\nfail webHttpPort add\nset RSRP=1 --times 2\n"
        "row ApnStatusTable set x Status=1\nwait 5\nset \"RSRP=1\n--times 3\nat 1s at 2s clear\nwait 24.1h\nwait "
        "24h\n");
    const Ran ran = RunLine("sim run /tmp/scenario.conf");
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(GetObject("RSRP"), "-95");
    std::string lines;
    std::istringstream errors(ran.errors);
    for (std::string line; std::getline(errors, line);)
        if (const size_t at = line.find(".conf:"); at != line.npos)
            lines += std::to_string(atoi(line.c_str() + at + 6)) + " ";
    EXPECT_EQ(lines, "4 5 6 7 8 9 10 12 13 14 15 16 17 18 19 20 21 ") << ran.errors;
    EXPECT_NE(ran.errors.find("has 17 mistakes; nothing was run"), std::string::npos) << ran.errors;
    WriteScenario("wait 0s\nrow DnsClientTable del last\n");
    EXPECT_NE(RunLine("sim run /tmp/scenario.conf").errors.find("conf:2: no row was added"), std::string::npos);
}
}  // namespace
}  // namespace kobd::test
