// What taps cost the requests that they show.
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

#include "bench/connection.h"
#include "bench/measure.h"
#include "bench/phases.h"
#include "tests/items.h"
#include "tests/system/daemon_process.h"

namespace kobd::bench
{
namespace
{
constexpr int kRounds = 11;
constexpr int kTurns = 1000;
constexpr useconds_t kForgottenUs = 1'100'000;  // after which the daemon's next message lets go of closed taps

// Taps the daemon and takes what comes, as a monitor does.
class Monitor
{
public:
    Monitor()
    {
        if (BusClientOpen(&client_) != 0 || BusTapOpen(&client_, &tap_, 5000) != 0) abort();
        taker_ = std::thread([this] { Take(); });
    }
    ~Monitor()
    {
        ended_ = true;
        taker_.join();
        BusTapClose(tap_);
        BusClientClose(&client_);
    }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

private:
    void Take()
    {
        constexpr int kWaitMs = 20;
        alignas(MessageHeader) char message[kMessageMax];
        BusTapped tapped{};
        uint32_t missed = 0;
        while (!ended_) (void)BusTapNext(tap_, &tapped, reinterpret_cast<MessageHeader*>(message), &missed, kWaitMs);
    }

    BusClient client_;
    BusTap* tap_ = nullptr;
    std::atomic<bool> ended_ = false;
    std::thread taker_;
};

double MedianTurn(Connection& connection)
{
    std::vector<double> turns;
    for (int turn = 0; turn < kTurns; ++turn)
    {
        const auto start = Clock::now();
        connection.Ask(kReqObjGet, test::Name("webHttpPort"));
        turns.push_back(MicrosecondsSince(start));
    }
    return Median(turns);
}
}  // namespace

void Taps()
{
    constexpr double kAim = 1.1;  // a tenth fewer answers at most
    Pin(false);
    test::DaemonProcess daemon("/tmp/tapped");
    if (!daemon.Start()) abort();
    Connection connection;
    Series none;
    Series one;
    Series ten;
    for (int round = 0; round < kRounds; ++round)
    {
        none.rounds.push_back(MedianTurn(connection));
        {
            const Monitor monitor;
            one.rounds.push_back(MedianTurn(connection));
            const Monitor more[9];
            ten.rounds.push_back(MedianTurn(connection));
        }
        usleep(kForgottenUs);
        MedianTurn(connection);
    }
    PrintAgainst("get of 1 object, a monitor beside it", one, none, kAim);
    PrintAgainst("get of 1 object, ten monitors beside it", ten, none, 0);
}
}  // namespace kobd::bench
