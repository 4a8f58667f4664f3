// The event source hears what changes in the daemon and tells all listeners. It has one tap for all of them, and only
// while there are any. A router's daemon has no taps. There the event source joins as the module to which changes are
// announced, and its events have names but no values.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "web/events/known_values.h"
#include "web/server/connections.h"

namespace kobd::web
{
class EventSource
{
public:
    explicit EventSource(Connections& connections) : connections_(connections) {}

    // Returns when `stop` is true. Call it on a thread that does nothing else.
    void Run(const std::atomic<bool>& stop);

private:
    void Listen();
    void Forget();
    void FollowTap(kobd_tap* tap);
    void FollowModule();
    void Know();
    void Take(const kobd_tapped& message);
    void Tell(const std::string& type, const Json& data);
    void TellState(bool up, const char* source, const std::string& why);
    bool IsWanted() const;

    Connections& connections_;
    const std::atomic<bool>* stop_ = nullptr;
    KnownValues known_ = {};
    std::chrono::milliseconds pause_ = {};                 // after which the values may be read again
    std::chrono::steady_clock::time_point may_read_ = {};  // when that is over
    uint64_t number_ = 0;                                  // of the last event
    std::string state_ = {};
};
}  // namespace kobd::web
