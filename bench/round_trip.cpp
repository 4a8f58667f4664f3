// Round trips through the real daemon against the same bytes over bare queues, all cases taking
// turns in every round, so that whatever else the machine does meets all of them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>

#include "bench/bare_bus.h"
#include "bench/connection.h"
#include "bench/measure.h"
#include "bench/phases.h"
#include "bench/redis.h"
#include "dictionary/records.h"
#include "host/objects/sources.h"
#include "host/state/database.h"
#include "host/state/folder.h"
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

// Twenty flags with this value.
std::string Twenty(const std::string& value)
{
    std::string items;
    int count = 0;
    for (const ObjDef& object : kObjects)
        if (object.get != nullptr && object.set != nullptr && object.check.type == VT_BOOL &&
            object.check.validator == nullptr && count++ < 20)
            items += Pair(object.name, value);
    return items;
}

std::vector<Case> Cases()
{
    const std::array<std::string, 2> ports = {Pair("webHttpPort", "8080"), Pair("webHttpPort", "8081")};
    const auto same = [](const std::string& items) { return std::array<std::string, 2>{items, items}; };
    return {
        {"get of 1 object", kReqObjGet, same(Name("webHttpPort")), 1.4, false},
        {"get of 100 objects", kReqObjGet, same(Names(100)), 2.2, false},
        {"set, silent", kReqObjSetSilent, ports, 1.5, false},
        {"set with commit", kReqObjSet, ports, 1.5, true},
        {"table get of 1 row", kReqTableGet, same(test::Row("ledsTable", 1)), 0, false},
        {"set of 20 objects with commit", kReqObjSet, {Twenty("1"), Twenty("0")}, 0, true},
    };
}

// A file of full size on the disk of the state, of which 4 KB at a time are written and synced: what no commit that is
// on the disk when it is answered can be faster than.
class BareFile
{
public:
    explicit BareFile(const std::string& folder)
        : file_(open((folder + "/bare").c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600))
    {
        for (off_t place = 0; place < kSize; place += kBlock) Write(place);
        if (fsync(file_) != 0) abort();
    }
    ~BareFile() { close(file_); }
    BareFile(const BareFile&) = delete;
    BareFile& operator=(const BareFile&) = delete;

    void Commit()
    {
        Write(next_);
        next_ = (next_ + kBlock) % kSize;
        if (fdatasync(file_) != 0) abort();
    }

private:
    static constexpr off_t kSize = 1024 * 1024;
    static constexpr off_t kBlock = 4096;

    void Write(off_t place)
    {
        static const char bytes[kBlock] = {'x'};
        if (pwrite(file_, bytes, kBlock, place) != kBlock) abort();
    }

    int file_;
    off_t next_ = 0;
};

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

void MeasureRound(Case* one, Connection& connection, BareClient& bare, BareFile& file)
{
    const size_t request = sizeof(MessageHeader) + one->items[0].size();
    const size_t reply = connection.Ask(one->id, one->items[1]);
    MeasureTurns(
        one->commits ? kCommitTurns : kTurns,
        [&](int turn) { connection.Ask(one->id, one->items[static_cast<size_t>(turn % 2)]); },
        [&](int)
        {
            bare.Bounce(request, reply);
            if (one->commits) file.Commit();
        },
        one);
}

void MeasureRedis(Redis& redis, Series* measured)
{
    std::vector<double> turns;
    for (int turn = 0; turn < kCommitTurns; ++turn)
    {
        const auto start = Clock::now();
        redis.Set(turn % 2 == 0 ? "8080" : "8081");
        turns.push_back(MicrosecondsSince(start));
    }
    measured->rounds.push_back(Median(turns));
}

// With `redis` the rounds take turns with those of a redis in the same folder, where there is one.
void MeasureAll(std::vector<Case>* cases, const std::string& folder, Series* redis = nullptr)
{
    test::DaemonProcess daemon(folder);
    if (!daemon.Start()) abort();
    Connection connection;
    BareServer server;
    BareClient bare(server);
    BareFile file(folder);
    std::optional<Redis> other;
    if (redis != nullptr) other.emplace(folder);
    for (int round = 0; round < kRounds; ++round)
    {
        for (Case& one : *cases) MeasureRound(&one, connection, bare, file);
        if (other && other->Runs()) MeasureRedis(*other, redis);
    }
}
}  // namespace

void FillState(const std::string& folder, size_t values, int64_t rows)
{
    host::UseStateFolder(folder);
    const host::State state;
    const auto changes = [&]
    {
        for (size_t number = 0; number < values; ++number)
            state->Run("INSERT OR REPLACE INTO objects VALUES(?, 'a value of some length')", host::StateName(number));
        state->Run("INSERT OR REPLACE INTO lists VALUES('FwUrlFilterTable', ?)", rows);
        state->Run(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?)"
            " INSERT INTO cells SELECT 'FwUrlFilterTable', i, f, iif(f = '', '', 'host' || i || '.example.net')"
            " FROM n, (SELECT '' AS f UNION ALL SELECT 'URL')",
            rows);
    };
    if (!state->Write(changes)) abort();
    state->Close();
}

void RoundTrips()
{
    for (const bool pinned : {true, false})
    {
        Pin(pinned);
        const std::string where = pinned ? ", one processor" : ", unpinned";
        std::vector<Case> cases = Cases();
        MeasureAll(&cases, "/tmp/state");
        for (const Case& one : cases)
            PrintAgainst(one.what + where, one.measured, one.limit, pinned && !one.commits ? one.aim : 0);
    }
}

void Commits(const std::string& disk_folder)
{
    Pin(true);
    std::vector<Case> commits = {Cases()[3], Cases()[5]};
    for (const char* stored : {", on disk", ", on disk, 3400 stored"})
    {
        if (!commits[0].measured.rounds.empty()) FillState(disk_folder, 1400, 2000);
        for (Case& one : commits) one.measured = one.limit = {};
        Series redis;
        MeasureAll(&commits, disk_folder, &redis);
        if (!redis.rounds.empty()) PrintLine("redis, set synced to the disk" + std::string(stored), redis, "us");
        for (const Case& one : commits) PrintAgainst(one.what + std::string(stored), one.measured, one.limit, one.aim);
    }
}
}  // namespace kobd::bench
