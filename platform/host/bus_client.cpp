// The client's side of the bus: a private queue for replies, calls with a deadline.
#include "platform/bus_client.h"

#include <sys/msg.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "platform/host/bus_queues.h"

using namespace kobd;
using namespace kobd::host;

namespace
{
constexpr int kNotRunning = 3;
constexpr int kTimeout = 8;
constexpr int kFailed = 9;
constexpr int kSlots = 512;  // private queues a process may have at once
constexpr int64_t kPollNs = 200000;
constexpr int kSpins = 64;  // empty looks at the queue before sleeping between looks

struct QueueMessage
{
    long type;
    char bytes[kMessageMax];
};

std::atomic<int> next_slot = 0;

// Waits for a message until `deadline`; bytes received, or -1 with errno ETIME, EIDRM ...
ssize_t ReceiveUntil(int queue, QueueMessage* message, int64_t deadline)
{
    for (int look = 0;; ++look)
    {
        const ssize_t received = msgrcv(queue, message, sizeof message->bytes, 0, IPC_NOWAIT | MSG_NOERROR);
        if (received >= 0) return received;
        if (errno != ENOMSG && errno != EINTR && errno != EAGAIN) return -1;
        if (NowMs() >= deadline)
        {
            errno = ETIME;
            return -1;
        }
        if (look < kSpins) continue;
        const timespec pause = {0, kPollNs};
        nanosleep(&pause, nullptr);
    }
}
}  // namespace

int BusModuleLook(uint32_t module, BusModule* look)
{
    *look = {};
    look->claimed = ModuleIsClaimed(module);
    const int queue = ModuleQueue(module, false);
    if (queue < 0) return errno == ENOENT ? 0 : errno;
    look->queue = true;
    msqid_ds state = {};
    if (msgctl(queue, IPC_STAT, &state) != 0) return errno;
    look->messages = state.msg_qnum;
    look->capacity = state.msg_qbytes;
    return 0;
}

int BusClientOpen(BusClient* client)
{
    *client = {};
    ReclaimQueues();
    for (int attempt = 0; attempt < kSlots; ++attempt)
    {
        client->slot = next_slot++ % kSlots;
        const key_t key = ClientKey(getpid(), client->slot);
        client->queue = msgget(key, IPC_CREAT | IPC_EXCL | 0600);
        if (client->queue >= 0) return 0;
        if (errno != EEXIST) return kFailed;
    }
    return kFailed;
}

int BusClientJoin(BusClient* client, uint32_t module)
{
    *client = {};
    client->claim = ClaimModule(module);
    if (client->claim < 0) return kFailed;
    client->module = module;
    client->queue = ModuleQueue(module, true);
    if (client->queue >= 0) return 0;
    BusClientClose(client);
    return kFailed;
}

void BusClientClose(BusClient* client)
{
    if (client->queue >= 0) msgctl(client->queue, IPC_RMID, nullptr);
    ReleaseModule(client->claim);
    *client = {};
}

int BusClientSend(BusClient* client, MessageHeader* message, int timeout_ms)
{
    BusHeader header = LoadBusHeader(message);
    header.sequence = ++client->sequence;
    header.sender = static_cast<uint32_t>(getpid());
    header.reply_queue = message->message_class == kClassRequest && client->module == 0 ? client->queue + 1 : 0;
    StoreBusHeader(message, header);
    const int queue = ModuleIsClaimed(message->destination) ? ModuleQueue(message->destination, false) : -1;
    if (queue < 0) return kNotRunning;
    return QueueSend(queue, message, &timeout_ms);
}

int BusClientCall(BusClient* client, MessageHeader* request, MessageHeader* reply, int timeout_ms)
{
    const int64_t deadline = NowMs() + timeout_ms;
    if (const int code = BusClientSend(client, request, timeout_ms)) return code;
    for (;;)
    {
        const int left = static_cast<int>(deadline - NowMs());
        const int code = BusClientReceive(client, reply, left > 0 ? left : 0);
        if (code != 0) return code;
        if (LoadBusHeader(reply).sequence == client->sequence) return 0;  // else a late reply
    }
}

int BusClientReceive(BusClient* client, MessageHeader* message, int timeout_ms)
{
    static thread_local QueueMessage in;
    const int64_t deadline = NowMs() + timeout_ms;
    for (;;)
    {
        const ssize_t received = ReceiveUntil(client->queue, &in, deadline);
        if (received < 0) return errno == ETIME ? kTimeout : kFailed;
        const size_t size = static_cast<size_t>(received);
        if (size < sizeof(MessageHeader)) continue;
        memcpy(message, in.bytes, size);
        if (message->length <= size - sizeof(MessageHeader)) return 0;
    }
}
