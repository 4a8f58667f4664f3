// The System V queues of the host's message bus.
#include "host/bus/bus_queues.h"

#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>

namespace kobd::host
{
namespace
{
constexpr int64_t kRetryNs = 1000000;

int OwnQueue(uint32_t module)
{
    for (;;)
    {
        const int queue = msgget(static_cast<key_t>(module), IPC_CREAT | kQueueMode);
        msqid_ds state = {};
        if (queue < 0) return -1;
        if (msgctl(queue, IPC_STAT, &state) == 0 && IsOurs(state.msg_perm)) return queue;
        if (msgctl(queue, IPC_RMID, nullptr) != 0 && errno != EIDRM && errno != EINVAL) return -1;
    }
}

bool QueueIsThere(int queue)
{
    msqid_ds status;
    return msgctl(queue, IPC_STAT, &status) == 0 || errno == EACCES;
}
}  // namespace

BusHeader LoadBusHeader(const MessageHeader* message)
{
    BusHeader header;
    memcpy(&header, message, sizeof header);
    return header;
}

void StoreBusHeader(MessageHeader* message, const BusHeader& header) { memcpy(message, &header, sizeof header); }

key_t ClientKey(pid_t process, int slot) { return kClientKeyBit | (slot << kProcessBits) | (process & kProcessMask); }

bool IsTrusted(const ipc_perm& of)
{
    const auto is_trusted = [](uid_t user) { return user == geteuid() || user == 0; };
    return is_trusted(of.uid) && is_trusted(of.cuid);
}

bool IsOurs(const ipc_perm& of)
{
    constexpr unsigned kOthers = 077;
    return of.uid == geteuid() && of.cuid == geteuid() && (of.mode & kOthers) == 0;
}

bool IsModule(uint32_t module)
{
    errno = EINVAL;
    return static_cast<key_t>(module) != IPC_PRIVATE;
}

int ModuleQueue(uint32_t module, bool create)
{
    if (!IsModule(module)) return -1;
    return create ? OwnQueue(module) : msgget(static_cast<key_t>(module), kQueueMode);
}

int TrustedModuleQueue(uint32_t module)
{
    const int queue = ModuleQueue(module, false);
    msqid_ds state = {};
    if (queue < 0 || msgctl(queue, IPC_STAT, &state) != 0) return -1;
    if (IsTrusted(state.msg_perm)) return queue;
    errno = EPERM;
    return -1;
}

void GiveQueue(int queue, uid_t owner)
{
    msqid_ds state = {};
    if (msgctl(queue, IPC_STAT, &state) != 0 || state.msg_perm.uid == owner) return;
    state.msg_perm.uid = owner;
    state.msg_perm.mode &= kClientMode;  // the owner before may have opened it to others
    msgctl(queue, IPC_SET, &state);
}

int QueueSend(int queue, const MessageHeader* message, int* budget_ms)
{
    static thread_local QueueMessage out;
    const size_t size = sizeof(MessageHeader) + message->length;
    if (size > kMessageMax) return 5;
    out.type = 1;
    memcpy(out.bytes, message, size);
    int64_t start = 0;
    bool waited = false;  // most messages do not, and need no clock
    while (msgsnd(queue, &out, size, IPC_NOWAIT) != 0)
    {
        if (errno == EINTR) continue;
        if (errno != EAGAIN) return QueueIsThere(queue) ? 5 : 3;  // EINVAL is no queue, or more than msgmax
        if (!waited) start = NowMs();
        waited = true;
        if (NowMs() - start >= *budget_ms)
        {
            *budget_ms = 0;
            return 5;
        }
        const timespec pause = {0, kRetryNs};
        nanosleep(&pause, nullptr);
    }
    if (!waited) return 0;
    const int64_t spent = NowMs() - start;
    *budget_ms -= static_cast<int>(spent < *budget_ms ? spent : *budget_ms);
    return 0;
}

bool WidenQueue(int queue)
{
    msqid_ds status;
    if (msgctl(queue, IPC_STAT, &status) != 0 || status.msg_qbytes >= kQueueBytes) return true;
    status.msg_qbytes = kQueueBytes;
    return msgctl(queue, IPC_SET, &status) == 0;
}
}  // namespace kobd::host
