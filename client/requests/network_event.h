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

// Fails where the event needs a number for its text and has none, which the daemon would ignore without a word.
Failure CheckEventText(const NetworkEvent& event, const std::string& text);

// Whether somebody reads the text of the event: the daemon, or the module to which it goes on.
bool IsTextRead(const NetworkEvent& event);

// Sends the event with a text, or without one where it is empty.
Failure SendEvent(const Options& options, const NetworkEvent& event, const std::string& text);
}  // namespace kobd::client
