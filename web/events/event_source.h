// Hears what changes in the daemon and tells all listeners: one tap for all of them, and only while there are any.
// Where the daemon has no taps, as on a router, it joins as the module that is told of changes; events then have names
// alone.
#pragma once

#include <atomic>
#include <memory>

#include "web/events/known_values.h"
#include "web/server/connections.h"

namespace kobd::web
{
class EventSource
{
public:
    explicit EventSource(Connections& connections) : connections_(connections) {}

    // Until `stop`. For a thread of its own.
    void Run(const std::atomic<bool>& stop);

private:
    void Listen();
    void Forget();
    void FollowTap(kobd_tap* tap);
    void FollowModule();
    void Take(const kobd_tapped& message);
    void Tell(const std::string& type, const Json& data);
    void TellState(bool up, const char* source, const std::string& why);
    bool IsWanted() const;

    Connections& connections_;
    const std::atomic<bool>* stop_ = nullptr;
    KnownValues known_ = {};
    uint64_t number_ = 0;  // of the last event
    std::string state_ = {};
};
}  // namespace kobd::web
