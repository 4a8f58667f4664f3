// The address of events: the request only takes a place among the listeners, and needs no thread from then on.
#include "web/api/routes.h"
#include "web/api/services.h"
#include "web/server/limits.h"

namespace kobd::web
{
Reply GetEvents(const Call& call)
{
    if (call.request.method != "GET") return {};
    if (!call.services.connections.ReserveListener())
        throw Problem{503, "All " + std::to_string(kListenersMost) + " places of listeners are taken."};
    Reply reply;
    reply.listen = true;
    return reply;
}
}  // namespace kobd::web
