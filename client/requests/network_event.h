// Network events, which the router's other modules send to the daemon.
#pragma once

#include <string>

#include "client/requests/request.h"
#include "daemon/base/messages.h"

namespace kobd::client
{
// The names of all events: "NetworkUp".
Words EventNames();

// Finds the event of this name, "NetworkUp" or "EvtNetworkUp". The failure names all events.
Failure FindEvent(const std::string& name, const NetworkEvent** event);

// Whether the event needs a number for its text and has it. The daemon says nothing to a number out of range.
Failure CheckEventText(const NetworkEvent& event, const std::string& text);

// Sends the event with a text, or without one where it is empty.
Failure SendEvent(const Options& options, const NetworkEvent& event, const std::string& text);
}  // namespace kobd::client
