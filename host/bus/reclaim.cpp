// Removing the queues of processes that are gone.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE  // MSG_STAT, MSG_INFO, MSG_COPY
#endif
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <initializer_list>

#include "host/bus/bus_queues.h"

#ifndef MSG_COPY
#define MSG_COPY 040000  // Linux: receive a copy of the message with that number, and leave it there
#endif

namespace kobd::host
{
namespace
{
constexpr time_t kUnusedSeconds = 10;  // a client uses its queue within microseconds

key_t KeyOf(const ipc_perm& of)
{
#ifdef __GLIBC__
    return of.__key;
#else
    return of.__ipc_perm_key;
#endif
}

// A client of this user, or one of root's that gave its queue to this user's daemon.
bool IsOfThisUser(const ipc_perm& of)
{
    return (of.uid == geteuid() || of.cuid == geteuid()) && (of.cuid == geteuid() || of.cuid == 0);
}

bool IsGone(pid_t process) { return process > 0 && kill(process, 0) != 0 && errno == ESRCH; }

// Whether everything in the queue is a reply to its own client, or the empty message that ends a wait.
bool HoldsRepliesOnly(int queue, const msqid_ds& state)
{
    constexpr msgqnum_t kMostReplies = 1024;  // 16384 bytes hold 315; the kernel counts to each of them
    static thread_local QueueMessage message;
    if (state.msg_qnum > kMostReplies) return false;
    for (msgqnum_t number = 0; number < state.msg_qnum; ++number)
    {
        const ssize_t received = msgrcv(queue, &message, sizeof message.bytes, static_cast<long>(number),
                                        MSG_COPY | IPC_NOWAIT | MSG_NOERROR);
        if (received < 0 && errno == ENOSYS) return state.msg_lspid == getpid() || IsGone(state.msg_lspid);
        if (received == 0) continue;
        if (received < static_cast<ssize_t>(sizeof(MessageHeader))) return false;
        if (LoadBusHeader(reinterpret_cast<MessageHeader*>(message.bytes)).reply_queue != queue + 1) return false;
    }
    return true;
}

// The key alone is no proof: any program may have a key with the top bit, and the process of another process
// namespace is not known here by the number in its key. A client receives from its queue as soon as it has made
// it, so that the kernel's record of the last receiver names it by the number that is right here.
bool ClientHasLeft(int queue, const msqid_ds& state)
{
    constexpr unsigned kModeBits = 0777;
    const unsigned mode = state.msg_perm.mode & kModeBits;
    const pid_t client = KeyOf(state.msg_perm) & kProcessMask;
    if ((mode != kClientMode && mode != kQueueMode) || !IsGone(client)) return false;
    if (state.msg_lrpid == client) return HoldsRepliesOnly(queue, state);
    if (mode != kClientMode || state.msg_rtime != 0) return false;
    // Killed before it came to that: it had sent the message, or not yet.
    if (state.msg_lspid == client) return HoldsRepliesOnly(queue, state);
    return state.msg_stime == 0 && time(nullptr) - state.msg_ctime >= kUnusedSeconds;
}

// Holds the claim meanwhile, so that nobody who joins gets the queue that is being removed.
void ReclaimModuleQueue(uint32_t module)
{
    const int queue = ModuleQueue(module, false);
    msqid_ds state{};
    if (queue < 0 || msgctl(queue, IPC_STAT, &state) != 0 || !IsOfThisUser(state.msg_perm)) return;
    const int claim = ClaimModule(module);
    if (claim < 0) return;
    msgctl(queue, IPC_RMID, nullptr);
    ReleaseModule(claim);
}
}  // namespace

void ReclaimQueues()
{
    msginfo limits{};
    const int highest = msgctl(0, MSG_INFO, reinterpret_cast<msqid_ds*>(&limits));
    for (int slot = 0; slot <= highest; ++slot)
    {
        msqid_ds state{};
        const int queue = msgctl(slot, MSG_STAT, &state);
        if (queue < 0 || (KeyOf(state.msg_perm) & kClientKeyBit) == 0 || !IsOfThisUser(state.msg_perm)) continue;
        if (ClientHasLeft(queue, state)) msgctl(queue, IPC_RMID, nullptr);
    }
}

void ReclaimModuleQueues()
{
    for (const uint32_t module : {kModuleNotify, kModuleServices, kModuleForward}) ReclaimModuleQueue(module);
}
}  // namespace kobd::host
