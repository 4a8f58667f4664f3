// The System V side of the host's message bus.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE  // MSG_STAT, MSG_INFO
#endif
#include "host/bus/bus_queues.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

namespace kobd::host
{
namespace
{
constexpr int kQueueMode = 0600;
constexpr int kClientKeyBit = static_cast<int>(0x80000000u);
constexpr int kProcessBits = 22;  // Linux: process ids stay below 4194304
constexpr int kProcessMask = (1 << kProcessBits) - 1;
constexpr int64_t kRetryNs = 1000000;

union SemaphoreArgument  // for semctl, which leaves its declaration to the caller
{
    int value;
    semid_ds* state;
};

// Root may use everybody's queue, so that who came first, under whatever user and mode, would hear and say what is
// meant to be the module's own.
bool IsOurs(const ipc_perm& of)
{
    constexpr unsigned kOthers = 077;
    return of.uid == geteuid() && of.cuid == geteuid() && (of.mode & kOthers) == 0;
}

// The module's semaphore as this user's alone: one that another left is removed, one that another holds is refused.
int OwnSemaphore(uint32_t module)
{
    for (;;)
    {
        const int claim = semget(static_cast<key_t>(module), 1, IPC_CREAT | kQueueMode);
        semid_ds state = {};
        if (claim < 0 ||
            (semctl(claim, 0, IPC_STAT, SemaphoreArgument{.state = &state}) == 0 && IsOurs(state.sem_perm)))
            return claim;
        if (ClaimHolds(claim) || (semctl(claim, 0, IPC_RMID) != 0 && errno != EIDRM && errno != EINVAL)) return -1;
    }
}

int OwnQueue(uint32_t module)
{
    for (;;)
    {
        const int queue = msgget(static_cast<key_t>(module), IPC_CREAT | kQueueMode);
        msqid_ds state = {};
        if (queue < 0 || (msgctl(queue, IPC_STAT, &state) == 0 && IsOurs(state.msg_perm))) return queue;
        if (msgctl(queue, IPC_RMID, nullptr) != 0 && errno != EIDRM && errno != EINVAL) return -1;
    }
}

struct QueueMessage
{
    long type;
    char bytes[kMessageMax];
};

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

int64_t NowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

key_t ClientKey(pid_t process, int slot) { return kClientKeyBit | (slot << kProcessBits) | (process & kProcessMask); }

int ClaimModule(uint32_t module)
{
    const int claim = OwnSemaphore(module);
    if (claim < 0) return -1;
    sembuf take[2] = {{0, 0, IPC_NOWAIT}, {0, 1, IPC_NOWAIT | SEM_UNDO}};
    return semop(claim, take, 2) == 0 ? claim : -1;
}

void ReleaseModule(int claim)
{
    if (claim >= 0) semctl(claim, 0, IPC_RMID);
}

int ModuleClaim(uint32_t module) { return semget(static_cast<key_t>(module), 1, kQueueMode); }

bool ClaimHolds(int claim) { return claim >= 0 && semctl(claim, 0, GETVAL) > 0; }

int ModuleQueue(uint32_t module, bool create)
{
    return create ? OwnQueue(module) : msgget(static_cast<key_t>(module), kQueueMode);
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

void ReclaimQueues()
{
    msginfo limits{};
    const int highest = msgctl(0, MSG_INFO, reinterpret_cast<msqid_ds*>(&limits));
    for (int slot = 0; slot <= highest; ++slot)
    {
        msqid_ds status{};
        const int queue = msgctl(slot, MSG_STAT, &status);
        if (queue < 0) continue;
#ifdef __GLIBC__
        const key_t key = status.msg_perm.__key;
#else
        const key_t key = status.msg_perm.__ipc_perm_key;
#endif
        if ((key & kClientKeyBit) == 0) continue;
        const pid_t process = key & kProcessMask;
        if (kill(process, 0) != 0 && errno == ESRCH) msgctl(queue, IPC_RMID, nullptr);
    }
}
}  // namespace kobd::host
