// Round trips through the real daemon against the same bytes over bare queues, all cases taking
// turns in every round, so that whatever else the machine does meets all of them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>

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
using test::Name;
using test::Pair;

constexpr int kRounds = 11;
constexpr int kTurns = 1000;       // round trips of one case in one round
constexpr int kCommitTurns = 200;  // of those that write

struct Case
{
    const char* what;
    uint16_t id;
    std::array<std::string, 2> items;  // taking turns, so that a set always changes something
    double aim;                        // highest ratio to the limit, pinned
    bool commits;
    bool folder_in_limit = false;
    Series measured = {};
    Series limit = {};
};

// The first `count` numbers and flags. Aborts when there are fewer: a shorter request is no measurement.
std::string Names(size_t count)
{
    std::string items;
    for (const ObjDef& object : kObjects)
        if (object.get != nullptr && (object.check.type == VT_INT32 || object.check.type == VT_BOOL) && count > 0)
        {
            items += Name(object.name);
            --count;
        }
    if (count > 0) abort();
    return items;
}

std::vector<Case> Cases()
{
    const std::array<std::string, 2> ports = {Pair("webHttpPort", "8080"), Pair("webHttpPort", "8081")};
    const auto same = [](const std::string& items) { return std::array<std::string, 2>{items, items}; };
    return {
        {"get of 1 object", test::kGet, same(Name("webHttpPort")), 1.4, false},
        {"get of 100 objects", test::kGet, same(Names(100)), 2.2, false},
        {"set, silent", test::kSetSilent, ports, 1.5, false},
        {"set with commit", test::kSet, ports, 1.3, true},
        {"table get of 1 row", test::kTableGet, same(test::Row("ledsTable", 1)), 0, false},
    };
}

// One write, fsync and rename of these bytes, beside the state file and on the same disk; with the
// fsync of the folder as well, without which the old file may be back after a power cut.
void WriteDurably(const std::string& folder, const std::string& bytes, bool sync_folder)
{
    const std::string fresh = folder + "/bare.new";
    const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) || fsync(file) != 0 ||
        close(file) != 0 || rename(fresh.c_str(), (folder + "/bare").c_str()) != 0)
        abort();
    if (!sync_folder) return;
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fsync(opened) != 0 || close(opened) != 0) abort();
}

// Two kinds of work taking turns: the medians of both.
void MeasureTurns(int turns, const std::function<void(int)>& work, const std::function<void(int)>& limit, Case* into)
{
    std::vector<double> worked;
    std::vector<double> limited;
    for (int turn = 0; turn < turns; ++turn)
    {
        auto start = Clock::now();
        work(turn);
        worked.push_back(MicrosecondsSince(start));
        start = Clock::now();
        limit(turn);
        limited.push_back(MicrosecondsSince(start));
    }
    into->measured.rounds.push_back(Median(worked));
    into->limit.rounds.push_back(Median(limited));
}

void MeasureRound(Case* one, Connection& connection, BareClient& bare, const std::string& folder)
{
    const size_t request = sizeof(MessageHeader) + one->items[0].size();
    const size_t reply = connection.Ask(one->id, one->items[1]);
    const std::string bytes(one->commits ? std::filesystem::file_size(folder + "/objects") : 0, 'x');
    MeasureTurns(
        one->commits ? kCommitTurns : kTurns,
        [&](int turn) { connection.Ask(one->id, one->items[static_cast<size_t>(turn % 2)]); },
        [&](int)
        {
            bare.Bounce(request, reply);
            if (one->commits) WriteDurably(folder, bytes, one->folder_in_limit);
        },
        one);
}

void MeasureAll(std::vector<Case>* cases, const std::string& folder)
{
    test::DaemonProcess daemon(folder);
    if (!daemon.Start()) abort();
    Connection connection;
    BareServer server;
    BareClient bare(server);
    for (int round = 0; round < kRounds; ++round)
        for (Case& one : *cases) MeasureRound(&one, connection, bare, folder);
}
}  // namespace

void RoundTrips(const std::string& disk_folder)
{
    for (const bool pinned : {true, false})
    {
        Pin(pinned);
        const std::string where = pinned ? ", one processor" : ", unpinned";
        std::vector<Case> cases = Cases();
        MeasureAll(&cases, "/tmp/state");
        for (const Case& one : cases) PrintAgainst(one.what + where, one.measured, one.limit, pinned ? one.aim : 0);
    }
    Pin(true);
    std::vector<Case> commits = {Cases()[3], Cases()[3]};
    commits[1].folder_in_limit = true;
    MeasureAll(&commits, disk_folder);
    PrintAgainst("set with commit, on disk", commits[0].measured, commits[0].limit, commits[0].aim);
    PrintAgainst("the same, limit with fsync of the folder", commits[1].measured, commits[1].limit, 0);
}
}  // namespace kobd::bench
