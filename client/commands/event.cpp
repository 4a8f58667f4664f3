// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include "client/commands/commands.h"
#include "client/requests/network_event.h"

namespace kobd::client
{
Outcome CommandEvent(const Options& options, const Words& words)
{
    const NetworkEvent* event = nullptr;
    if (Failure failure = FindEvent(words[0], &event)) return failure;
    return SendEvent(options, *event, words.size() > 1 ? words[1] : "");
}
}  // namespace kobd::client
