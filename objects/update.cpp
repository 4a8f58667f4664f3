// Update: asks the platform to commit the configuration. The payload is not looked at.
#include "daemon/base/reply.h"
#include "objects/handlers.h"
#include "platform/kob_platform.h"

namespace kobd
{
int ReqUpdate(MessageHeader* request)
{
    Reply reply(request, "ReqUpdate");
    update_config();
    return reply.Send();
}
}  // namespace kobd
