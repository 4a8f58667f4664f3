// How the cost of a request grows with what it names, and with how many ask at once.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>

#include "bench/bare_bus.h"
#include "bench/connection.h"
#include "bench/measure.h"
#include "bench/phases.h"
#include "dictionary/records.h"
#include "tests/items.h"
#include "tests/system/daemon_process.h"

namespace kobd::bench
{
namespace
{
constexpr int kRounds = 11;
constexpr int kTurns = 200;
constexpr double kClientsUs = 100000;  // how long the clients of one round ask
constexpr const char* kTable = "node_648Table";
constexpr const char* kColumn = "USN";
constexpr const char* kChanges = "/tmp/changes";

double MedianOf(Connection& connection, uint16_t id, const std::string& items)
{
    std::vector<double> taken;
    for (int turn = 0; turn < kTurns; ++turn)
    {
        const auto start = Clock::now();
        connection.Ask(id, items);
        taken.push_back(MicrosecondsSince(start));
        // A dump answers the name of a file that is ours to remove.
        if (id == kReqTableDump) unlink(connection.Items().c_str() + kItemHeader);
    }
    return Median(taken);
}

std::string PortNames(int count)
{
    std::string items;
    for (int i = 0; i < count; ++i) items += test::Name("webHttpPort");
    return items;
}

void PrintGrowth(const std::string& what, int count, const Series& series)
{
    char line[96];
    snprintf(line, sizeof line, "%s, %d (%.2f us each)", what.c_str(), count, series.Middle() / count);
    PrintLine(line, series, "us");
}

void GrowNames(Connection& connection)
{
    const std::vector<int> counts = {1, 10, 100};
    std::vector<Series> series(counts.size());
    for (int round = 0; round < kRounds; ++round)
        for (size_t i = 0; i < counts.size(); ++i)
            series[i].rounds.push_back(MedianOf(connection, kReqObjGet, PortNames(counts[i])));
    for (size_t i = 0; i < counts.size(); ++i) PrintGrowth("get, names", counts[i], series[i]);
}

// Rows are added as the counts rise: the rounds of one count follow one another.
void GrowRows(Connection& connection)
{
    int rows = 0;
    std::string changes;
    for (const int count : {1, 8, 64})
    {
        for (; rows < count; ++rows)
        {
            connection.Ask(kReqTableAdd, test::TextItem(kTagTableName, kTable));
            int32_t index;
            memcpy(&index, connection.Items().data() + kItemHeader, sizeof index);
            changes += test::Row(kTable, index) + test::Column(kColumn, "x");
        }
        std::ofstream(kChanges, std::ios::binary) << changes;
        Series dump;
        Series set;
        for (int round = 0; round < kRounds; ++round)
        {
            dump.rounds.push_back(MedianOf(connection, kReqTableDump, test::TextItem(kTagTableName, kTable)));
            set.rounds.push_back(MedianOf(connection, kReqTableSetSilent, test::TextItem(kTagValue, kChanges)));
        }
        PrintGrowth("table dump, rows", count, dump);
        PrintGrowth("table set, silent, rows", count, set);
    }
}

// Who connects gets something to ask with, again and again.
using Connect = std::function<std::function<void()>()>;

std::function<void()> ConnectDaemon()
{
    const auto connection = std::make_shared<Connection>();
    return [connection] { connection->Ask(kReqObjGet, test::Name("webHttpPort")); };
}

// Asks until the time is over and tells how often it was answered.
void AskFor(int result, const Connect& connect)
{
    const std::function<void()> ask = connect();
    long answered = 0;
    for (const auto start = Clock::now(); MicrosecondsSince(start) < kClientsUs; ++answered) ask();
    if (write(result, &answered, sizeof answered) != sizeof answered) abort();
}

// Microseconds an answer, when so many clients ask at once.
double TimeOfAnswer(int clients, const Connect& connect)
{
    int result[2];
    if (pipe(result) != 0) abort();
    for (int i = 0; i < clients; ++i)
        if (fork() == 0)
        {
            AskFor(result[1], connect);
            _exit(0);
        }
    close(result[1]);
    long all = 0;
    long one = 0;
    int told = 0;
    for (; read(result[0], &one, sizeof one) == sizeof one; ++told) all += one;
    close(result[0]);
    if (told != clients) abort();
    for (int i = 0; i < clients; ++i) wait(nullptr);
    return kClientsUs / static_cast<double>(all);
}

void GrowClients()
{
    const BareServer server;
    const Connect bare = [&server]
    {
        const auto client = std::make_shared<BareClient>(server);
        return [client] { client->Bounce(sizeof(MessageHeader) + 16, sizeof(MessageHeader) + 31); };
    };
    const std::vector<int> counts = {1, 4, 16, 64};
    std::vector<Series> series(counts.size());
    std::vector<Series> limits(counts.size());
    for (int round = 0; round < kRounds; ++round)
        for (size_t i = 0; i < counts.size(); ++i)
        {
            series[i].rounds.push_back(TimeOfAnswer(counts[i], ConnectDaemon));
            limits[i].rounds.push_back(TimeOfAnswer(counts[i], bare));
        }
    for (size_t i = 0; i < counts.size(); ++i)
        PrintAgainst("an answer, clients at once: " + std::to_string(counts[i]), series[i], limits[i], 0);
}
}  // namespace

void Growth()
{
    Pin(true);
    test::DaemonProcess daemon("/tmp/growth");
    if (!daemon.Start()) abort();
    {
        Connection connection;
        GrowNames(connection);
        GrowRows(connection);
    }
    GrowClients();
}
}  // namespace kobd::bench
