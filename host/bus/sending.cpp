// Messages and replies of the daemon, and the items in them.
#include "host/bus/sending.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"
#include "host/bus/late_modules.h"
#include "host/bus/report.h"
#include "host/bus/taps.h"

using namespace kobd;
using namespace kobd::host;

namespace
{
constexpr int kSendBudgetMs = 100;  // all sends of one request together may wait this long

// What is left of the waiting that the sends of one request may do. Outside a handler every send
// has the whole budget.
thread_local int send_budget_ms = kSendBudgetMs;
thread_local bool handling = false;
thread_local int own_queue = -1;

void LogNotTrusted(uint32_t module)
{
    static thread_local uint32_t told = 0;
    if (module != told) REPORT("nothing is sent to module 0x%08X, its queue is another user's", module);
    told = module;
}
}  // namespace

HandlingRequest::HandlingRequest(int queue)
{
    own_queue = queue;
    send_budget_ms = kSendBudgetMs;
    handling = true;
}

HandlingRequest::~HandlingRequest() { handling = false; }

int MessageSend(MessageHeader* message)
{
    TapSent(message);
    const uint32_t module = message->destination;
    const int queue = TrustedModuleQueue(module);
    if (queue < 0 && errno == EPERM) LogNotTrusted(module);
    if (queue < 0) return kNotRunning;
    if (!handling) send_budget_ms = kSendBudgetMs;
    const int64_t now = NowMs();
    const int budget = std::min(send_budget_ms, WaitLeftFor(module, now));
    int left = budget;
    const int code = QueueSend(queue, message, &left);
    send_budget_ms -= budget - left;
    NoteMessageTo(module, now, budget - left, code == 0);
    return code;
}

int MessageSendReply(MessageHeader* message)
{
    TapAnswered(message);
    const int32_t named = LoadBusHeader(message).reply_queue;  // any number, from anybody
    if (named <= 0) return kSendFailed;
    const int queue = named - 1;
    // A request that names our own queue would have us answer ourselves for ever.
    if (queue == own_queue) return kSendFailed;
    int no_wait = 0;
    const int code = QueueSend(queue, message, &no_wait);
    if (code == 0) NoteReplySent(queue);
    if (code == kSendFailed && NoteReplyDropped(queue))  // a client that is gone is nothing to tell of
        REPORT("reply of %d bytes to process %u dropped, its queue takes no more; this line comes once a client",
               message->length, LoadBusHeader(message).sender);
    return code == 0 ? 0 : kSendFailed;
}

int TlvPushIntToBuf(void* place, uint16_t tag, int32_t value)
{
    const uint16_t length = sizeof value;
    auto* bytes = static_cast<char*>(place);
    memcpy(bytes, &tag, sizeof tag);
    memcpy(bytes + 2, &length, sizeof length);
    memcpy(bytes + 4, &value, sizeof value);
    return 4 + 4;
}

int TlvPushStringToBuf(void* place, uint16_t tag, const char* text)
{
    const uint16_t length = static_cast<uint16_t>(strlen(text) + 1);
    auto* bytes = static_cast<char*>(place);
    memcpy(bytes, &tag, sizeof tag);
    memcpy(bytes + 2, &length, sizeof length);
    memcpy(bytes + 4, text, length);
    return 4 + length;
}
