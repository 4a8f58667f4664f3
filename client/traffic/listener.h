// Hearing what passes the daemon: by a tap, or, where there is none as on a router, by joining the bus as the modules
// to which the daemon sends.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/arguments/command_line.h"
#include "client/library/kobd_client.h"

namespace kobd::client
{
class Listener
{
public:
    Listener() = default;
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // Waits until a daemon answers, and says so where it has to wait; then taps it. Without `tap_alone` it joins the
    // free modules where the daemon's bus knows no taps, and says which are not free. Fails when nothing can be heard,
    // and ends without a failure when Stopped().
    Failure Open(bool tap_alone);

    // The next message, at most one; nothing when none came within some milliseconds. Goes on with the next daemon when
    // the one that it listened to has ended. A failure ends the listening.
    Failure Next(std::optional<kobd_tapped>* message);

    bool IsTap() const { return tap_ != nullptr; }

private:
    Failure Join();
    Failure NextOfJoined(std::optional<kobd_tapped>* message);
    void Close();

    struct Joined
    {
        uint32_t module;
        kobd_watch* watch;
    };

    bool tap_alone_ = false;
    kobd_client* client_ = nullptr;
    kobd_tap* tap_ = nullptr;
    std::vector<Joined> joined_ = {};
    size_t next_ = 0;  // of the joined modules, which take turns
};

// From the first call on, Ctrl-C and a termination end the listening in order: Stopped() is true then, when nobody
// reads standard output any more, and when time is up.
bool Stopped();

// From now on time is up after so many milliseconds; nothing: never.
void StopAfter(std::optional<int> milliseconds);
bool TimeIsUp();

// Fails where time was up before as many lines were printed as --count asks for.
Failure TooFew(const Options& options, const std::string& command, int printed);
}  // namespace kobd::client
