#include "web/events/event_source.h"

#include <algorithm>
#include <ctime>
#include <thread>

#include "web/api/bus.h"

namespace kobd::web
{
namespace
{
constexpr int kLook = 200;  // milliseconds between two looks whether there are listeners
constexpr uint16_t kEventClass = 3;

// Between two times that all values are read: the first after a success, then twice as long after each failure.
constexpr std::chrono::milliseconds kPauseLeast = std::chrono::seconds(1);
constexpr std::chrono::milliseconds kPauseMost = std::chrono::minutes(1);

struct TapClose
{
    void operator()(kobd_tap* tap) const { kobd_tap_close(tap); }
};
struct WatchClose
{
    void operator()(kobd_watch* watch) const { kobd_watch_close(watch); }
};

void Pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

struct NetworkEvent
{
    uint16_t id;
    const char* name;
};
constexpr NetworkEvent kNetworkEvents[] = {
    {0x0010, "EthernetUp"},    {0x0011, "EthernetDown"}, {0x0012, "EthernetIPAdd"},
    {0x0013, "EthernetIPDel"}, {0x0014, "NetworkUp"},    {0x0015, "NetworkDown"},
    {0x0301, "ApnChange"},     {0x0303, "ApnIPChange"},  {0x0318, "PCscfIPChange"}};

std::string NetworkEventName(uint16_t id)
{
    for (const NetworkEvent& event : kNetworkEvents)
        if (event.id == id) return event.name;
    return "event " + std::to_string(id);
}
}  // namespace

bool EventSource::IsWanted() const { return !*stop_ && connections_.Listeners() > 0; }

void EventSource::Run(const std::atomic<bool>& stop)
{
    stop_ = &stop;
    while (!stop)
    {
        try
        {
            if (IsWanted()) Listen();
            if (!IsWanted()) Forget();
        }
        catch (const Problem& problem)
        {
            TellState(false, "none", problem.detail);
        }
        Pause(kLook);
    }
}

// Whoever listens next hears of the router when it is really heard again.
void EventSource::Forget()
{
    state_.clear();
    connections_.SetGreeting("");
}

void EventSource::Listen()
{
    kobd_tap* opened = nullptr;
    const int code = kobd_tap_open(Bus(), &opened);
    const std::unique_ptr<kobd_tap, TapClose> tap(opened);
    if (code == 0) return FollowTap(opened);
    const bool no_taps = code == KOBD_TIMEOUT;  // a router's bus library knows no such message
    if (!no_taps) Demand(code);
    FollowModule();
}

void EventSource::FollowTap(kobd_tap* tap)
{
    pause_ = kPauseLeast;
    Know();
    kobd_tapped message = {};
    for (int code = 0; code != KOBD_NOT_RUNNING && IsWanted();)
    {
        code = kobd_tap_next(tap, kLook, &message);
        if (code == 0 && message.missed > 0)
        {
            Tell("missed", {{"count", message.missed}});
            known_.Forget();
        }
        if (code != KOBD_NOT_RUNNING && !known_.Knows() && std::chrono::steady_clock::now() >= may_read_) Know();
        if (code == 0) Take(message);
    }
    if (IsWanted()) TellState(false, "none", "kobd has ended");
}

// Reads all values. Where that fails, events have names alone until it works.
void EventSource::Know()
{
    std::string why;
    try
    {
        known_.Read();
        pause_ = kPauseLeast;
    }
    catch (const Problem& problem)
    {
        known_.Forget();
        why = "changes have names alone: " + problem.detail;
        pause_ = std::min(2 * pause_, kPauseMost);
    }
    may_read_ = std::chrono::steady_clock::now() + pause_;
    TellState(true, "tap", why);
}

void EventSource::FollowModule()
{
    kobd_watch* opened = nullptr;
    Demand(kobd_watch_open(&opened, KOBD_MODULE_NOTIFY));
    const std::unique_ptr<kobd_watch, WatchClose> watch(opened);
    known_.Forget();
    TellState(true, "module", "the router shows no requests: changes have names alone");
    uint16_t id = 0;
    for (int code = 0; code != KOBD_INITIALIZE_FAILED && IsWanted();)
    {
        code = kobd_watch_next(opened, kLook, &id);
        if (code != 0) continue;
        const KnownValues::Event event = known_.EventOf(id, kobd_watch_payload(opened));
        if (!event.type.empty()) Tell(event.type, event.data);
    }
}

void EventSource::Take(const kobd_tapped& message)
{
    known_.Note(message);
    KnownValues::Event event;
    if (message.kind == KOBD_TAP_SENT && message.module == KOBD_MODULE_NOTIFY)
        event = known_.EventOf(message.id, message.payload);
    if (message.kind == KOBD_TAP_RECEIVED && message.message_class == kEventClass)
        event = {"network", {{"name", NetworkEventName(message.id)}}};
    if (event.type.empty()) return;
    event.data["time"] = message.time_us;
    event.data["process"] = message.process;
    event.data["program"] = message.program;
    Tell(event.type, event.data);
}

void EventSource::Tell(const std::string& type, const Json& data)
{
    connections_.Broadcast("id: " + std::to_string(++number_) + "\nevent: " + type + "\ndata: " + TextOf(data) +
                           "\n\n");
}

// Listeners that come later are told, too.
void EventSource::TellState(bool up, const char* source, const std::string& why)
{
    Json state = {{"up", up}, {"source", source}};
    if (!why.empty()) state["why"] = why;
    const std::string event = "retry: 1000\nevent: router\ndata: " + TextOf(state) + "\n\n";
    if (event != state_) connections_.Broadcast(event);
    state_ = event;
    connections_.SetGreeting(event);
}
}  // namespace kobd::web
