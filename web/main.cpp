// kobd-web: the daemon's objects and tables over HTTP, and a page that shows them.
#include <unistd.h>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

#include "web/api/services.h"
#include "web/browser.h"
#include "web/events/event_source.h"
#include "web/server/http.h"
#include "web/server/limits.h"

namespace kobd::web
{
namespace
{
constexpr char kHelp[] =
    "usage: kobd-web [--port PORT] [--open]\n"
    "Serves the objects and tables of kobd over HTTP, to programs of this machine alone, with a page that shows them.\n"
    "It prints the address of the page. Ctrl-C ends it.\n\n"
    "  --port PORT   The port to listen on, 8088 without it; 0 takes any that is free.\n"
    "  --open        Opens the page in the browser, too.\n"
    "  --help        Shows this text.\n"
    "  --version     Shows the version.\n";

struct Options
{
    int port = 8088;
    bool open = false;
    int status = -1;  // to end with at once
};

int Wrong(const std::string& what)
{
    fprintf(stderr, "kobd-web: %s\nkobd-web --help shows what it takes.\n", what.c_str());
    return 2;
}

bool ReadPort(const char* text, int* port)
{
    const char* end = text + strlen(text);
    return std::from_chars(text, end, *port).ptr == end && end != text && *port >= 0 && *port <= 65535;
}

Options ReadOptions(int count, char** words)
{
    Options options;
    for (int i = 1; i < count && options.status < 0; ++i)
    {
        const std::string word = words[i];
        if (word == "--open")
            options.open = true;
        else if (word == "--help")
            options.status = fputs(kHelp, stdout) < 0;
        else if (word == "--version")
            options.status = puts("kobd-web " KOBD_VERSION) < 0;
        else if (word != "--port")
            options.status = Wrong("there is no option '" + word + "'");
        else if (i + 1 == count || !ReadPort(words[++i], &options.port))
            options.status = Wrong("--port takes a number from 0 to 65535");
    }
    return options;
}

// The kobctl that lies beside this program.
std::string PathOfKobctl()
{
    char path[4096] = "";
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path - 1);
    const std::string own(path, size > 0 ? static_cast<size_t>(size) : 0);
    return own.substr(0, own.rfind('/') + 1) + "kobctl";
}

// Waits for a signal to end by, and sweeps once a second meanwhile.
void WaitForEnd(const sigset_t& signals, Connections* connections)
{
    const timespec second = {1, 0};
    while (sigtimedwait(&signals, nullptr, &second) < 0) connections->Sweep();
}

// Ends the program in any case: a call to a slow router may take a minute.
void EndSoon()
{
    constexpr unsigned kPatience = 3;  // seconds
    signal(SIGALRM,
           [](int)
           {
               kobd_remove_change_files();
               _exit(0);
           });
    alarm(kPatience);
}

int Serve(const Options& options, const sigset_t& signals)
{
    Connections connections;
    const int port = connections.Open(options.port);
    const std::string token = NewToken();
    if (port == 0 || token.empty())
    {
        fprintf(stderr, "kobd-web: cannot listen on port %d of this machine: %s; --port takes another\n", options.port,
                strerror(errno));
        return 1;
    }
    const std::string address = "http://127.0.0.1:" + std::to_string(port) + "/#token=" + token;
    ScenarioRun scenario(connections, PathOfKobctl());
    Services services = {connections, scenario, PathOfKobctl()};
    const Guard guard(port, token);
    Http http(guard, &services);
    const Answerer answer = [&](const std::string& request, std::string* text) { return http.Answer(request, text); };
    std::atomic<bool> stop = false;
    EventSource events(connections);
    std::vector<std::thread> threads;
    threads.emplace_back([&] { events.Run(stop); });
    for (int i = 0; i < kWorkers; ++i) threads.emplace_back([&] { connections.Work(answer); });
    printf("%s\n", address.c_str());
    fflush(stdout);
    {
        const StartPage page(options.open ? address : "");
        WaitForEnd(signals, &connections);
    }
    stop = true;
    connections.Stop();
    scenario.Stop();
    EndSoon();
    for (std::thread& thread : threads) thread.join();
    return 0;
}

int Main(int count, char** words)
{
    const Options options = ReadOptions(count, words);
    if (options.status >= 0) return options.status;
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return Serve(options, signals);
}
}  // namespace
}  // namespace kobd::web

int main(int count, char** words) { return kobd::web::Main(count, words); }
