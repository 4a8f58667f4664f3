// kobctl event NAME [TEXT]: sends the daemon a network event, as the router's other modules do.
#include "client/commands/commands.h"
#include "client/requests/network_event.h"

namespace kobd::client
{
Outcome CommandEvent(const Options& options, const Words& words)
{
    const NetworkEvent* event = nullptr;
    if (Failure failure = FindEvent(words[0], &event)) return failure;
    const std::string text = words.size() > 1 ? words[1] : "";
    if (Failure failure = CheckEventText(*event, text)) return failure;
    if (!text.empty() && !IsTextRead(*event)) SayError("note: nobody reads the text of " + words[0]);
    if (Failure failure = SendEvent(options, *event, text)) return failure;
    return {{{"sent", event->name}, {"text", text}}, ""};
}
}  // namespace kobd::client
