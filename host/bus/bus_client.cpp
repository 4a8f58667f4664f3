// The client's side of the bus: a private queue for replies, calls with a deadline.
#include "platform/bus_client.h"

#include <pthread.h>
#include <sys/msg.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/bus/bus_queues.h"
#include "host/bus/wake_at.h"

using namespace kobd;
using namespace kobd::host;

namespace
{
constexpr int kSlots = 512;       // private queues a process may have at once
constexpr long kPollNs = 200000;  // between looks at the queue, where nothing would end a wait for it
constexpr int64_t kLookMs = 200;  // between looks whether the daemon that is to reply has ended
constexpr int kJoinTries = 5;     // the daemon holds a module for a moment when it removes a queue left behind
constexpr long kJoinAgainNs = 1000000;

std::atomic<unsigned> next_slot = 0;
std::atomic<unsigned> forks = 0;  // between this process and the one that first opened a connection

void CountFork() { ++forks; }

// A connection is of the process that opened it: a child's replies would get mixed with the parent's, and its
// queue would go when the parent ends.
void Begin(BusClient* client)
{
    static pthread_once_t watching = PTHREAD_ONCE_INIT;
    pthread_once(&watching, [] { pthread_atfork(nullptr, nullptr, CountFork); });
    *client = {};
    client->process = getpid();
    client->forks = forks;
}

bool IsOfThisProcess(const BusClient* client) { return client->queue >= 0 && client->forks == forks; }

// Receives once, so that the kernel's record of the queue names this process. False where the kernel lets the queue
// hold nothing: no wait would ever end there.
bool SignQueue(int queue)
{
    QueueMessage empty;
    empty.type = 1;
    return msgsnd(queue, &empty, 0, IPC_NOWAIT) == 0 && msgrcv(queue, &empty, 0, 0, IPC_NOWAIT | MSG_NOERROR) == 0;
}

bool HasRoom(int queue)
{
    msqid_ds state{};
    return WidenQueue(queue) || (msgctl(queue, IPC_STAT, &state) == 0 && state.msg_qbytes > 0);
}

// Whether the module was left in order since the last message to it: the request is answered by now, or lost. A
// module that was killed leaves its queue to the next one, which answers.
bool WasLeft(const BusClient* client)
{
    msqid_ds state{};
    return msgctl(client->destination_queue, IPC_STAT, &state) != 0 && !ClaimHolds(client->destination_claim);
}

// Root's own queue could not be used by a daemon of another user.
void GiveToOwnerOf(const msqid_ds& destination, BusClient* client)
{
    GiveQueue(client->queue, destination.msg_perm.uid);
    if (client->module != 0) GiveClaim(client->claim, destination.msg_perm.uid);
}

// The queue that this client may send to: root's everybody's, another user's own or root's.
int QueueFor(BusClient* client, uint32_t module)
{
    if (geteuid() != 0) return TrustedModuleQueue(module);
    const int queue = ModuleQueue(module, false);
    msqid_ds state{};
    if (queue < 0 || msgctl(queue, IPC_STAT, &state) != 0) return -1;
    GiveToOwnerOf(state, client);
    return queue;
}

// A daemon of another user that is to send to root's queue may come at any time.
void FollowDaemon(BusClient* client)
{
    if (client->module == 0 || client->module == kModuleKobd || geteuid() != 0) return;
    if (ClaimHolds(ModuleClaim(kModuleKobd))) QueueFor(client, kModuleKobd);
}

// Waits for a message until `deadline`; bytes received, or -1 with errno ETIME, EIDRM ...
ssize_t ReceiveUntil(int queue, QueueMessage* message, int64_t deadline)
{
    const WakeAt wake(queue, deadline);
    for (bool over = false;;)
    {
        const int flags = MSG_NOERROR | (over || !wake.Armed() ? IPC_NOWAIT : 0);
        const ssize_t received = msgrcv(queue, message, sizeof message->bytes, 0, flags);
        if (received > 0) return received;
        // Nothing, or a wake: this wait's or an earlier one's.
        if (received < 0 && errno != ENOMSG && errno != EINTR && errno != EAGAIN) return -1;
        if (received < 0 && over)
        {
            errno = ETIME;
            return -1;
        }
        over = NowMs() >= deadline;
        const timespec pause = {0, kPollNs};
        if (!over && !wake.Armed()) nanosleep(&pause, nullptr);
    }
}

// The queue of the module, -1 when nobody has it. A client asks the same module again and again, so
// its claim and queue are remembered; only whether the claim still holds is looked at every time. That
// it has no queue is not remembered: it takes one as soon as the system has one to give.
int FindDestination(BusClient* client, uint32_t module)
{
    if (client->destination == module && client->destination_queue >= 0 && ClaimHolds(client->destination_claim))
        return client->destination_queue;
    client->destination = module;
    client->destination_claim = ModuleClaim(module);
    client->destination_queue = ClaimHolds(client->destination_claim) ? QueueFor(client, module) : -1;
    return client->destination_queue;
}

int SendTo(BusClient* client, const MessageHeader* message, int* timeout_ms)
{
    const int queue = FindDestination(client, message->destination);
    return queue < 0 ? kNotRunning : QueueSend(queue, message, timeout_ms);
}

// The next sound message until `deadline`. 0, 8 or 9.
int ReceiveMessage(BusClient* client, MessageHeader* message, int64_t deadline)
{
    static thread_local QueueMessage in;
    for (;;)
    {
        const ssize_t received = ReceiveUntil(client->queue, &in, deadline);
        if (received < 0 && errno != ETIME) return kInitializeFailed;
        if (received < 0)
        {
            FollowDaemon(client);
            return kReplyTimeout;
        }
        const size_t size = static_cast<size_t>(received);
        if (size < sizeof(MessageHeader)) continue;
        memcpy(message, in.bytes, size);
        if (message->length <= size - sizeof(MessageHeader)) return 0;
    }
}
}  // namespace

int BusModuleLook(uint32_t module, BusModule* look)
{
    *look = {};
    const int claim = ModuleClaim(module);
    look->claimed = ClaimHolds(claim);
    look->process = look->claimed ? ClaimHolder(claim) : 0;
    const int queue = ModuleQueue(module, false);
    if (queue < 0) return errno == ENOENT ? 0 : errno;
    look->queue = true;
    msqid_ds state = {};
    if (msgctl(queue, IPC_STAT, &state) != 0) return errno;
    look->messages = state.msg_qnum;
    look->capacity = state.msg_qbytes;
    look->owner = state.msg_perm.uid;
    return 0;
}

int BusClientOpen(BusClient* client)
{
    Begin(client);
    ReclaimQueues();
    for (int attempt = 0; attempt < kSlots; ++attempt)
    {
        client->slot = static_cast<int>(next_slot++ % kSlots);
        const key_t key = ClientKey(client->process, client->slot);
        client->queue = msgget(key, IPC_CREAT | IPC_EXCL | kClientMode);
        if (client->queue >= 0 || errno != EEXIST) break;
    }
    const int queue = client->queue;
    if (queue >= 0 && (SignQueue(queue) || (WidenQueue(queue) && SignQueue(queue)))) return 0;
    BusClientClose(client);
    return kInitializeFailed;
}

int BusClientJoin(BusClient* client, uint32_t module)
{
    Begin(client);
    for (int attempt = 0; attempt < kJoinTries; ++attempt)
    {
        client->claim = ClaimModule(module);
        if (client->claim >= 0 || errno != EBUSY) break;
        const timespec pause = {0, kJoinAgainNs};
        nanosleep(&pause, nullptr);
    }
    if (client->claim < 0) return kInitializeFailed;
    client->module = module;
    client->queue = ModuleQueue(module, true);
    if (client->queue >= 0 && HasRoom(client->queue))
    {
        FollowDaemon(client);
        return 0;
    }
    BusClientClose(client);
    return kInitializeFailed;
}

void BusClientClose(BusClient* client)
{
    // A child that closes what its parent opened must not take it from the parent.
    if (client->process == getpid())
    {
        if (client->queue >= 0) msgctl(client->queue, IPC_RMID, nullptr);
        ReleaseModule(client->claim);
    }
    *client = {};
}

int BusClientSend(BusClient* client, MessageHeader* message, int timeout_ms)
{
    if (!IsOfThisProcess(client)) return kInitializeFailed;
    BusHeader header = LoadBusHeader(message);
    header.sequence = ++client->sequence;
    header.sender = static_cast<uint32_t>(client->process);
    header.reply_queue = message->message_class != kClassEvent && client->module == 0 ? client->queue + 1 : 0;
    StoreBusHeader(message, header);
    const int code = SendTo(client, message, &timeout_ms);
    if (code != kNotRunning || client->destination_queue < 0) return code;
    // The module may have left and come back with another queue since the last message.
    client->destination_queue = client->destination_claim = -1;
    return SendTo(client, message, &timeout_ms);
}

int BusClientCall(BusClient* client, MessageHeader* request, MessageHeader* reply, int timeout_ms)
{
    const int64_t deadline = NowMs() + timeout_ms;
    if (const int code = BusClientSend(client, request, timeout_ms)) return code;
    for (;;)
    {
        const int64_t look = std::min(deadline, NowMs() + kLookMs);
        int code = ReceiveMessage(client, reply, look);
        const bool left = code == kReplyTimeout && WasLeft(client);
        if (left) code = ReceiveMessage(client, reply, look);  // it may have come just before
        if (code == kReplyTimeout && left) return kNotRunning;
        if (code == kReplyTimeout && look < deadline) continue;
        if (code != 0) return code;
        if (LoadBusHeader(reply).sequence == client->sequence) return 0;  // else a late reply
    }
}

int BusClientReceive(BusClient* client, MessageHeader* message, int timeout_ms)
{
    if (!IsOfThisProcess(client)) return kInitializeFailed;
    return ReceiveMessage(client, message, NowMs() + timeout_ms);
}
