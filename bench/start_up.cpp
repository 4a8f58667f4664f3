// From the start of the daemon's process to its first answer, with the settings of the factory and with stored ones.
// The daemon says when it is ready: a client that asked again and again would take time from it.
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/measure.h"
#include "bench/phases.h"
#include "tests/items.h"
#include "tests/system/daemon_process.h"

namespace kobd::bench
{
namespace
{
constexpr int kStarts = 21;
constexpr double kUsPerMs = 1000;
constexpr std::string_view kSocket = "@kobd-bench-start";

// The service manager's end of the socket to which the daemon writes "READY=1".
int Listen()
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::ranges::copy(kSocket.substr(1), address.sun_path + 1);
    const timeval give_up = {10, 0};
    const int file = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + kSocket.size());
    if (file < 0 || bind(file, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        setsockopt(file, SOL_SOCKET, SO_RCVTIMEO, &give_up, sizeof give_up) != 0)
        abort();
    setenv("NOTIFY_SOCKET", kSocket.data(), 1);
    return file;
}

double StartOnce(int manager, const std::string& folder)
{
    test::DaemonProcess daemon(folder);
    char state[64];
    const auto start = Clock::now();
    const pid_t process = daemon.Spawn();
    if (recv(manager, state, sizeof state, 0) <= 0) abort();
    if (test::RequestItems(kReqObjGet, test::Name("webHttpPort")).bus != 0) abort();
    const double taken = MicrosecondsSince(start);
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    if (recv(manager, state, sizeof state, 0) <= 0) abort();  // that it stops
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
    const int manager = Listen();
    const std::string half = "/tmp/start-half";
    const std::string full = "/tmp/start-full";
    for (const std::string& folder : {half, full}) StartOnce(manager, folder);
    FillState(half, 1000, 1000);
    FillState(full, 1400, 2000);
    for (const bool pinned : {true, false})
    {
        Pin(pinned);
        const std::string where = pinned ? ", one processor" : ", unpinned";
        Series factory;
        Series stored_half;
        Series stored;
        Series commands;
        for (int i = 0; i < kStarts; ++i)
        {
            factory.rounds.push_back(StartOnce(manager, "/tmp/start"));
            stored_half.rounds.push_back(StartOnce(manager, half));
            stored.rounds.push_back(StartOnce(manager, full));
            commands.rounds.push_back(RunCommands());
        }
        PrintLine("start to first answer" + where, factory, "ms");
        PrintLine("the same, 2000 stored" + where, stored_half, "ms");
        PrintLine("the same, 3400 stored" + where, stored, "ms");
        PrintLine("of which its two sysctl commands" + where, commands, "ms");
    }
    unsetenv("NOTIFY_SOCKET");
    close(manager);
}
}  // namespace kobd::bench
