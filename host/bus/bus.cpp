// The bus library as the daemon sees it: one receive thread that calls handlers one at a time, a
// thread that removes the queues of killed clients, and sending with a bound on waiting.
#include <pthread.h>
#include <semaphore.h>
#include <sys/msg.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"

// The daemon exports its log; the other programs that use the bus have none and do not receive here.
extern "C" int kobd_log_print(const char* function, int line, const char* format, ...)
    __attribute__((weak, format(printf, 3, 4)));

#define REPORT(...)                                                                  \
    do                                                                               \
    {                                                                                \
        if (kobd_log_print != nullptr) kobd_log_print("Bus", __LINE__, __VA_ARGS__); \
    } while (false)

using namespace kobd;
using namespace kobd::host;

namespace
{
constexpr int kSendBudgetMs = 100;  // all sends of one request together may wait this long
constexpr int kReclaimSeconds = 2;
constexpr long kRetryNs = 100000000;  // between attempts to have a queue again

struct QueueMessage
{
    long type;
    alignas(MessageHeader) char bytes[kMessageMax];
};

// State of the process's one membership on the bus.
struct Bus
{
    const MsgHandler* handlers = nullptr;
    uint32_t module = 0;
    std::atomic<int> queue = -1;  // the receive thread makes a new one when somebody removed it
    int claim = -1;
    std::atomic<bool> stopping = false;
    pthread_t receiver{};
    pthread_t reclaimer{};
    sem_t stop_reclaimer{};
};
Bus bus;

// What is left of the waiting that the sends of one request may do. Outside a handler every send
// has the whole budget.
thread_local int send_budget_ms = kSendBudgetMs;
thread_local bool in_handler = false;

int* SendBudget()
{
    if (!in_handler) send_budget_ms = kSendBudgetMs;
    return &send_budget_ms;
}

// Modules whose queue stayed full for a whole budget. Sends to them do not wait until one of them
// got through again, so that a stuck module costs one wait and not one for every message.
constexpr size_t kStuckMax = 8;
thread_local std::array<uint32_t, kStuckMax> stuck_modules = {};  // 0: a free place

uint32_t* StuckPlace(uint32_t module)
{
    const auto place = std::find(stuck_modules.begin(), stuck_modules.end(), module);
    return place == stuck_modules.end() ? nullptr : &*place;
}

const MsgHandler* FindHandler(uint32_t code)
{
    for (const MsgHandler* row = bus.handlers; row != nullptr && row->handler != nullptr; ++row)
        if (row->code == code) return row;
    return nullptr;
}

// A message whose header promises more than arrived never reaches a handler.
void RefuseTruncated(MessageHeader* request)
{
    if (request->message_class != kClassRequest) return;
    alignas(MessageHeader) char bytes[sizeof(MessageHeader) + 8];
    memcpy(bytes, request, sizeof(MessageHeader));
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    reply->length = static_cast<uint16_t>(TlvPushIntToBuf(reply + 1, kTagResult, kInvalidArgument));
    MessageSendReply(reply);
}

void Dispatch(QueueMessage& message, size_t received)
{
    if (received < sizeof(MessageHeader)) return;
    auto* header = reinterpret_cast<MessageHeader*>(message.bytes);
    const MsgHandler* row = FindHandler(LoadBusHeader(header).code);
    if (row == nullptr) return;
    send_budget_ms = kSendBudgetMs;
    in_handler = true;
    if (header->length > received - sizeof(MessageHeader))
        RefuseTruncated(header);
    else
        row->handler(header);
    in_handler = false;
}

void Pause()
{
    const timespec pause = {0, kRetryNs};
    nanosleep(&pause, nullptr);
}

// Takes a queue, however long the system has none to give; a daemon that gave up would run on and serve nothing.
void TakeQueue()
{
    bool told = false;
    while (!bus.stopping && (bus.queue = ModuleQueue(bus.module, true)) < 0)
    {
        if (!told) REPORT("cannot have a queue yet: %s", strerror(errno));
        told = true;
        Pause();
    }
    if (!bus.stopping) REPORT("serving on a new queue of module 0x%08X", bus.module);
}

// The queue cannot be read: most likely somebody removed it.
void TakeQueueAgain()
{
    REPORT("the queue of module 0x%08X is lost with what was in it: %s", bus.module, strerror(errno));
    TakeQueue();
}

void* Receive(void*)
{
    static QueueMessage message;
    if (bus.queue < 0) TakeQueue();
    while (!bus.stopping)
    {
        const ssize_t received = msgrcv(bus.queue, &message, sizeof message.bytes, 0, MSG_NOERROR);
        if (received >= 0)
            Dispatch(message, static_cast<size_t>(received));
        else if (errno == EAGAIN || errno == ENOMEM)
            Pause();
        else if (errno != EINTR && !bus.stopping)
            TakeQueueAgain();
    }
    return nullptr;
}

void KeepQueueWide(bool* told)
{
    const bool wide = WidenQueue(bus.queue);
    if (!wide && !*told) REPORT("the queue of module 0x%08X is too small: %s", bus.module, strerror(errno));
    *told = !wide;
}

void* Reclaim(void*)
{
    for (bool told = false;;)
    {
        ReclaimQueues();
        KeepQueueWide(&told);
        timespec until{};
        clock_gettime(CLOCK_REALTIME, &until);
        until.tv_sec += kReclaimSeconds;
        if (sem_timedwait(&bus.stop_reclaimer, &until) == 0) return nullptr;
    }
}

// Ends the receive thread, which waits for a message or for a queue.
void StopReceiving()
{
    bus.stopping = true;
    msgctl(bus.queue, IPC_RMID, nullptr);
    pthread_join(bus.receiver, nullptr);
    msgctl(bus.queue, IPC_RMID, nullptr);  // one that it made in the meantime
}

// Threads of the library take no signals: those belong to the main thread.
bool StartThreads()
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    sem_init(&bus.stop_reclaimer, 0, 0);
    bool started = pthread_create(&bus.receiver, nullptr, Receive, nullptr) == 0;
    if (started && pthread_create(&bus.reclaimer, nullptr, Reclaim, nullptr) != 0)
    {
        StopReceiving();
        started = false;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return started;
}
}  // namespace

void MessageProccessRegister(const MsgHandler* table) { bus.handlers = table; }

int MessageInitialize(uint32_t module)
{
    if (bus.claim >= 0) return kInitializeFailed;
    bus.claim = ClaimModule(module);
    if (bus.claim < 0) return kInitializeFailed;
    bus.module = module;
    bus.stopping = false;
    bus.queue = ModuleQueue(module, true);
    const bool later = bus.queue < 0 && (errno == ENOSPC || errno == ENOMEM);  // the receive thread takes it
    if ((bus.queue >= 0 || later) && StartThreads()) return 0;
    msgctl(bus.queue, IPC_RMID, nullptr);
    bus.queue = -1;
    ReleaseModule(bus.claim);
    bus.claim = -1;
    return kInitializeFailed;
}

int MessageSend(MessageHeader* message)
{
    const int queue = ModuleQueue(message->destination, false);
    if (queue < 0) return 3;
    const uint32_t module = message->destination;
    uint32_t* stuck = StuckPlace(module);
    int no_wait = 0;
    int* budget = stuck != nullptr ? &no_wait : SendBudget();
    const bool may_wait = *budget > 0;
    const int code = QueueSend(queue, message, budget);
    if (code == 0 && stuck != nullptr) *stuck = 0;
    if (code == kSendFailed && may_wait)
        if (uint32_t* place = StuckPlace(0)) *place = module;
    return code;
}

int MessageSendReply(MessageHeader* message)
{
    const int32_t named = LoadBusHeader(message).reply_queue;  // any number, from anybody
    if (named <= 0) return 5;
    const int queue = named - 1;
    // A request that names our own queue would have us answer ourselves for ever.
    if (queue == bus.queue) return kSendFailed;
    const int code = QueueSend(queue, message, SendBudget());
    if (code == kSendFailed)  // a client that is gone is nothing to tell of
        REPORT("reply of %d bytes to process %u dropped, its queue takes no more", message->length,
               LoadBusHeader(message).sender);
    return code == 0 ? 0 : kSendFailed;
}

void MessageDestroy()
{
    if (bus.claim < 0) return;
    sem_post(&bus.stop_reclaimer);
    StopReceiving();
    pthread_join(bus.reclaimer, nullptr);
    ReleaseModule(bus.claim);
    bus.claim = -1;
    bus.queue = -1;
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
