// Passing received events on to other modules.
#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "events/handlers.h"

namespace kobd
{
void Forward(MessageHeader* event, uint32_t module, const char* function)
{
    event->destination = module;
    if (MessageSend(event) == kSendFailed)
        LOG_ALWAYS(function, "event %d dropped, the queue of module 0x%08X is full", event->id, module);
}
}  // namespace kobd
