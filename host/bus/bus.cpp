// The bus library as the daemon sees it.
//
// One thread joins: it claims the module, however long another process has it, has the state loaded, starts the
// receive thread and from then on removes the queues of killed clients. The receive thread calls handlers one at a
// time.
#include "host/bus/bus.h"

#include <pthread.h>
#include <sys/msg.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"
#include "host/bus/report.h"
#include "host/bus/sending.h"
#include "host/bus/stop_flag.h"
#include "host/bus/taps.h"

using namespace kobd;
using namespace kobd::host;

namespace
{
constexpr int kAgainMs = 2000;      // between attempts to join, and between looks for queues of killed clients
constexpr int kTakenAgainMs = 250;  // the same while another daemon has the module, which may be about to end
constexpr int kQueueAgainMs = 100;  // between attempts to have a queue again
constexpr int kHandlerMs = 1500;    // for a handler to come back when the bus is left
constexpr useconds_t kLookUs = 500;

// State of the process's one membership on the bus.
struct Bus
{
    const MsgHandler* handlers = nullptr;
    BusHooks hooks;
    uint32_t module = 0;
    std::atomic<int> queue = -1;  // the receive thread makes a new one when somebody removed it
    StopFlag stop;
    std::atomic<bool> serving = false;    // the receive thread is to go on
    std::atomic<bool> receiving = false;  // it has not ended
    pthread_t joiner{};
    pthread_t receiver{};
};
Bus bus;
thread_local RequestInHand in_hand;

const MsgHandler* FindHandler(uint32_t code)
{
    for (const MsgHandler* row = bus.handlers; row != nullptr && row->handler != nullptr; ++row)
        if (row->code == code) return row;
    return nullptr;
}

// A message whose header promises more than arrived never reaches a handler.
void RefuseTruncated(MessageHeader* request)
{
    if (request->message_class != kClassRequest && request->message_class != kClassHostControl) return;
    alignas(MessageHeader) char bytes[sizeof(MessageHeader) + 8];
    memcpy(bytes, request, sizeof(MessageHeader));
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    reply->length = static_cast<uint16_t>(TlvPushIntToBuf(reply + 1, kTagResult, kInvalidArgument));
    MessageSendReply(reply);
}

void Control(MessageHeader* header, const BusHeader& seen)
{
    if (bus.hooks.control == nullptr) return;
    in_hand = {seen.sender, seen.code, seen.reply_queue};
    bus.hooks.control(header);
    in_hand = {};
}

void Handle(MessageHeader* header, const BusHeader& seen)
{
    const MsgHandler* row = FindHandler(seen.code);
    if (row == nullptr) return;
    in_hand = {seen.sender, seen.code, seen.reply_queue};
    if (bus.hooks.begin != nullptr) bus.hooks.begin();
    row->handler(header);
    if (bus.hooks.end != nullptr) bus.hooks.end();
    in_hand = {};
}

void Dispatch(QueueMessage& message, size_t received)
{
    if (received < sizeof(MessageHeader)) return;
    auto* header = reinterpret_cast<MessageHeader*>(message.bytes);
    const BusHeader seen = LoadBusHeader(header);
    const HandlingRequest handling(bus.queue);
    if (header->length > received - sizeof(MessageHeader)) return RefuseTruncated(header);
    if (seen.code == MessageCode(kHostTap, kClassHostControl)) return AnswerTap(header);
    if (header->message_class == kClassHostControl) return Control(header, seen);
    TapReceived(header, seen.sender, seen.reply_queue);
    Handle(header, seen);
    TapHandled();
}

// Takes a queue, however long the system has none to give; a daemon that gave up would run on and serve nothing.
void TakeQueue(bool again)
{
    for (bool told = false; bus.serving && (bus.queue = ModuleQueue(bus.module, true)) < 0; told = again = true)
    {
        if (!told) REPORT("cannot have a queue yet: %s", strerror(errno));
        bus.stop.WaitFor(kQueueAgainMs);
    }
    if (again && bus.serving) REPORT("serving on a new queue of module 0x%08X", bus.module);
}

// The queue cannot be read: most likely somebody removed it.
void TakeQueueAgain()
{
    REPORT("the queue of module 0x%08X is lost with what was in it: %s", bus.module, strerror(errno));
    TakeQueue(true);
}

void* Receive(void*)
{
    static QueueMessage message;
    if (bus.queue < 0) TakeQueue(false);
    while (bus.serving)
    {
        const ssize_t received = msgrcv(bus.queue, &message, sizeof message.bytes, 0, MSG_NOERROR);
        if (received >= 0)
            Dispatch(message, static_cast<size_t>(received));
        else if (errno == EAGAIN || errno == ENOMEM)
            bus.stop.WaitFor(kQueueAgainMs);
        else if (errno != EINTR && bus.serving)
            TakeQueueAgain();
    }
    bus.receiving = false;
    return nullptr;
}

// Tries until the system has a thread to give. The thread blocks no signal, for a program that a handler starts
// would inherit that. False when the bus is left meanwhile.
bool StartThread(pthread_t* thread, void* (*run)(void*))
{
    for (bool told = false; !bus.stop.IsSet(); told = true)
    {
        const int error = pthread_create(thread, nullptr, run, nullptr);
        if (error == 0) return true;
        if (!told) REPORT("cannot join the bus as module 0x%08X yet: no thread (%s)", bus.module, strerror(error));
        bus.stop.WaitFor(kAgainMs);
    }
    return false;
}

// Why the module cannot be had, for a person.
void Obstacle(int error, pid_t holder, char* text, size_t size)
{
    if (error == EBUSY && holder != 0)
        snprintf(text, size, "process %d has it", holder);
    else if (error == EBUSY)
        snprintf(text, size, "a process has it that cannot be seen from here");
    else if (error == EACCES || error == EPERM)
        snprintf(text, size, "another user's semaphore has its key (ipcs -s shows it)");
    else if (error == ENOSPC)
        snprintf(text, size, "no semaphore is left (kernel.sem)");
    else
        snprintf(text, size, "%s", strerror(error));
}

// The claim, -1 when the bus is left before the module was free.
int AwaitClaim()
{
    char told[128] = "";
    while (!bus.stop.IsSet())
    {
        const int claim = ClaimModule(bus.module);
        if (claim >= 0 && *told != 0) REPORT("joined the bus as module 0x%08X", bus.module);
        if (claim >= 0) return claim;
        char why[sizeof told];
        const int error = errno;
        Obstacle(error, ClaimHolder(ModuleClaim(bus.module)), why, sizeof why);
        if (strcmp(why, told) != 0) REPORT("cannot join the bus as module 0x%08X yet: %s", bus.module, why);
        memcpy(told, why, sizeof told);
        bus.stop.WaitFor(error == EBUSY ? kTakenAgainMs : kAgainMs);
    }
    return -1;
}

void KeepQueueWide(bool* told)
{
    const bool wide = WidenQueue(bus.queue);
    if (!wide && !*told) REPORT("the queue of module 0x%08X is too small: %s", bus.module, strerror(errno));
    *told = !wide;
}

// Somebody may remove the semaphore, and to the clients nobody has the module then. False when another process took it
// meanwhile: what is received from here on is its own.
bool KeepClaim(int* claim)
{
    if (ClaimHolds(*claim)) return true;
    *claim = ClaimModule(bus.module);
    const bool held = *claim >= 0 || errno != EBUSY;
    if (*claim >= 0) REPORT("the semaphore of module 0x%08X was removed, it is taken anew", bus.module);
    if (!held) REPORT("the semaphore of module 0x%08X was removed, and another process has the module now", bus.module);
    return held;
}

// Ends early when the module is lost.
void ServeUntilStopped(int* claim)
{
    for (bool told = false; !bus.stop.IsSet() && KeepClaim(claim); bus.stop.WaitFor(kAgainMs))
    {
        ReclaimQueues();
        ReclaimModuleQueues();
        KeepQueueWide(&told);
    }
}

// Ends the receive thread, which waits for a message or for a queue. False when it is in a handler that does not
// come back in time; the process is then about to end, and keeps the module until it has.
bool StopReceiving()
{
    bus.serving = false;
    msgctl(bus.queue, IPC_RMID, nullptr);
    const int64_t deadline = NowMs() + kHandlerMs;
    while (bus.receiving && NowMs() < deadline) usleep(kLookUs);
    const bool ended = !bus.receiving;
    if (ended)
        pthread_join(bus.receiver, nullptr);
    else
        pthread_detach(bus.receiver);
    return ended;
}

// Touches nothing without the claim: the process that has the module may still be writing the state.
void* Join(void*)
{
    for (int claim; (claim = AwaitClaim()) >= 0; ReleaseModule(claim))
    {
        bus.queue = ModuleQueue(bus.module, true);  // what is asked meanwhile waits there
        if (bus.hooks.prepare != nullptr) bus.hooks.prepare();
        bus.serving = bus.receiving = true;
        bool ended = true;
        if (StartThread(&bus.receiver, Receive))
        {
            ServeUntilStopped(&claim);
            ended = StopReceiving();
        }
        msgctl(bus.queue, IPC_RMID, nullptr);  // one that was made in the meantime, or that nobody received from
        bus.queue = -1;
        if (!ended) return nullptr;
    }
    return nullptr;
}
}  // namespace

void kobd::host::BusCall(const BusHooks& hooks) { bus.hooks = hooks; }

RequestInHand kobd::host::BusRequest() { return in_hand; }

const char* kobd::host::BusProgram() { return SenderProgram(in_hand.sender, in_hand.connection); }

bool kobd::host::BusIsUsed() { return bus.stop.IsBegun(); }

void MessageProccessRegister(const MsgHandler* table) { bus.handlers = table; }

int MessageInitialize(uint32_t module)
{
    if (!bus.stop.Begin()) return kInitializeFailed;
    bus.module = module;
    bus.stop.Begun(StartThread(&bus.joiner, Join));
    return 0;
}

void MessageDestroy()
{
    if (!bus.stop.Set()) return;
    // The receive thread may be waiting for a message; the joiner wakes it.
    pthread_join(bus.joiner, nullptr);
    bus.stop.Clear();
}
