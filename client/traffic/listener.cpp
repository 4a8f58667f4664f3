#include "client/traffic/listener.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>

#include "client/dictionary/dictionary.h"
#include "client/output/outcome.h"
#include "client/requests/request.h"
#include "client/traffic/message_text.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 10'000'000;  // between looks at queues that were empty, or for a daemon
constexpr int kTapWaitMs = 50;

volatile sig_atomic_t stop = 0;
std::optional<std::chrono::steady_clock::time_point> end_of_time;

void Pause()
{
    const timespec pause = {0, kLookNs};
    nanosleep(&pause, nullptr);
}

std::string WhyNotJoined(uint32_t module)
{
    kobd_module seen = {};
    const bool taken = kobd_module_look(module, &seen) != 0 || seen.claimed != 0;
    return taken ? "another program receives them" : "the system has no message queue for it, see kobctl doctor";
}

bool IsThere()
{
    kobd_module daemon{};
    return kobd_module_look(KOBD_MODULE_DAEMON, &daemon) == 0 && daemon.claimed != 0;
}

// Whether the daemon answers soon. One that starts has its queue before it takes what is in there.
bool Answers(kobd_client* client)
{
    constexpr int kAnswerMs = 5000;
    kobd_items* items = kobd_items_new();
    if (items == nullptr || kobd_items_add_text(items, KOBD_TAG_TABLE_NAME, kTableRows[0].name) != KOBD_SUCCESS)
        return false;
    kobd_client_set_timeout(client, kAnswerMs);
    static_cast<void>(kobd_call(client, KOBD_TABLE_MAX_ROW, items));
    kobd_items_free(items);
    return kobd_answered(client) != 0;
}

// Whether this process caused the message: a watch must not show what it asks for itself.
bool IsOwn(const kobd_tapped& message)
{
    static const auto process = static_cast<uint32_t>(getpid());
    return message.process == process;
}
}  // namespace

bool Stopped()
{
    static const bool installed = []
    {
        signal(SIGINT, [](int) { stop = 1; });
        signal(SIGTERM, [](int) { stop = 1; });
        return true;
    }();
    return installed && (stop != 0 || OutputClosed() || TimeIsUp());
}

void StopAfter(std::optional<int> milliseconds)
{
    end_of_time.reset();
    if (milliseconds) end_of_time = std::chrono::steady_clock::now() + std::chrono::milliseconds(*milliseconds);
}

bool TimeIsUp() { return end_of_time && std::chrono::steady_clock::now() >= *end_of_time; }

Failure TooFew(const Options& options, const std::string& command, int printed)
{
    if (!TimeIsUp() || printed >= options.count) return {};
    return {KOBD_TIMEOUT, command + ": " + std::to_string(printed) + " of " + std::to_string(options.count) +
                              " lines within " + std::to_string(*options.timeout_ms) + " ms"};
}

Listener::~Listener() { Close(); }

void Listener::Close()
{
    kobd_tap_close(tap_);
    kobd_client_close(client_);
    for (const Joined& one : joined_) kobd_watch_close(one.watch);
    tap_ = nullptr;
    client_ = nullptr;
    joined_.clear();
}

Failure Listener::Open(bool tap_alone)
{
    constexpr int kTapMs = 2000;  // a daemon that answers other requests and not this one knows no taps
    tap_alone_ = tap_alone;
    int code = KOBD_NOT_RUNNING;
    for (bool told = false; code == KOBD_NOT_RUNNING && !Stopped(); Pause())
    {
        if (IsAnotherUsers()) return {KOBD_NOT_RUNNING, WhyUnreachable()};
        const bool there = IsThere();
        if (there && client_ == nullptr)
            if (const int opened = kobd_client_open(&client_)) return FailureWithCode(opened, "kobd cannot be asked");
        const bool answers = there && Answers(client_);
        if (!answers && !told)
            SayError(there ? "waiting for kobd, which runs and does not answer" : "waiting for kobd");
        told = true;
        if (!answers) continue;
        kobd_client_set_timeout(client_, kTapMs);
        code = kobd_tap_open(client_, &tap_);
    }
    if (tap_ == nullptr && TimeIsUp()) return {KOBD_NOT_RUNNING, WhyUnreachable()};
    if (tap_ != nullptr || Stopped()) return {};
    Close();
    if (code != KOBD_TIMEOUT) return FailureWithCode(code, "kobd cannot be tapped");
    if (tap_alone)
        return {
            code,
            "the message bus of this router shows its messages to no other program; only the imitated router's does"};
    return Join();
}

Failure Listener::Join()
{
    for (const uint32_t module : {kModuleNotify, kModuleServices, kModuleForward})
    {
        kobd_watch* watch = nullptr;
        if (kobd_watch_open(&watch, module) == KOBD_SUCCESS)
            joined_.push_back({module, watch});
        else
            SayError("cannot watch the " + ModuleName(module) + ": " + WhyNotJoined(module));
    }
    return joined_.empty() ? Failure{KOBD_INITIALIZE_FAILED, "nothing could be watched"} : Failure();
}

Failure Listener::NextOfJoined(std::optional<kobd_tapped>* message)
{
    for (size_t look = 0; look < joined_.size(); ++look)
    {
        const auto& [module, watch] = joined_[next_++ % joined_.size()];
        uint16_t id = 0;
        const int code = kobd_watch_next(watch, 0, &id);
        if (code == KOBD_TIMEOUT) continue;
        if (code != KOBD_SUCCESS) return {code, "the queue of the " + ModuleName(module) + " was removed"};
        *message = kobd_tapped{};
        (*message)->kind = KOBD_TAP_SENT;
        (*message)->program = "";
        (*message)->time_us = static_cast<int64_t>(time(nullptr)) * 1'000'000;
        (*message)->module = module;
        (*message)->message_class = kClassEvent;
        (*message)->id = id;
        (*message)->payload = kobd_watch_payload(watch);
        return {};
    }
    Pause();
    return {};
}

Failure Listener::Next(std::optional<kobd_tapped>* message)
{
    message->reset();
    if (tap_ == nullptr) return NextOfJoined(message);
    kobd_tapped tapped{};
    const int code = kobd_tap_next(tap_, kTapWaitMs, &tapped);
    if (code == KOBD_NOT_RUNNING)
    {
        Close();
        return Open(tap_alone_);
    }
    if (code == KOBD_SUCCESS && tapped.missed != 0)
        SayError("missed " + Counted(tapped.missed, "message") + ", because they came faster than they could be shown");
    if (code == KOBD_SUCCESS && !IsOwn(tapped)) *message = tapped;
    return {};
}
}  // namespace kobd::client
