// From the start of the daemon's process to its first answer, with the settings of the factory.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "bench/measure.h"
#include "bench/phases.h"
#include "tests/items.h"
#include "tests/system/daemon_process.h"

namespace kobd::bench
{
namespace
{
constexpr int kStarts = 21;
constexpr double kGiveUpUs = 10e6;
constexpr double kUsPerMs = 1000;
constexpr useconds_t kPauseUs = 50;

double StartOnce(const std::string& folder)
{
    test::DaemonProcess daemon(folder);
    const auto start = Clock::now();
    const pid_t process = daemon.Spawn();
    while (test::RequestItems(kReqObjGet, test::Name("webHttpPort")).bus != 0)
    {
        if (MicrosecondsSince(start) > kGiveUpUs) abort();
        usleep(kPauseUs);
    }
    const double taken = MicrosecondsSince(start);
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    return taken / kUsPerMs;
}

// What the start has to wait for: the two commands that raise the limits of the queues, in a shell.
double RunCommands()
{
    const auto start = Clock::now();
    for (const char* command : {"sysctl -w kernel.msgmax=8192", "sysctl -w kernel.msgmnb=16384"})
        if (system((std::string(command) + " >/dev/null").c_str()) != 0) abort();
    return MicrosecondsSince(start) / kUsPerMs;
}
}  // namespace

void StartUp()
{
    const std::string full = "/tmp/start-full";
    StartOnce(full);
    FillState(full);
    for (const bool pinned : {true, false})
    {
        Pin(pinned);
        const std::string where = pinned ? ", one processor" : ", unpinned";
        Series series;
        Series stored;
        Series commands;
        for (int i = 0; i < kStarts; ++i)
        {
            series.rounds.push_back(StartOnce("/tmp/start"));
            stored.rounds.push_back(StartOnce(full));
            commands.rounds.push_back(RunCommands());
        }
        PrintLine("start to first answer" + where, series, "ms");
        PrintLine("the same, 3400 stored" + where, stored, "ms");
        PrintLine("of which its two sysctl commands" + where, commands, "ms");
    }
}
}  // namespace kobd::bench
