// How the host's message bus lies on System V queues: shared by the daemon's and the client's side.
//
// One queue a module, key = module address, mode 0600; a client has a private queue whose key
// holds its process id, so that the queues of killed clients can be told and removed. A semaphore
// with the module's key is 1 while a process has the module; the kernel gives it back when the
// process dies, however it dies.
#pragma once

#include <sys/ipc.h>
#include <sys/types.h>

#include <cstdint>

#include "daemon/base/clock.h"
#include "daemon/base/messages.h"
#include "platform/message.h"

namespace kobd::host
{
// The header bytes that belong to the bus, as one view of the header.
struct BusHeader
{
    uint32_t sequence;     // 0: set by the client, copied into the reply
    int32_t reply_queue;   // 4: identifier of the sender's private queue plus 1, 0 for no reply
    uint32_t destination;  // 8
    uint32_t sender;       // 12: process id of the sender
    uint8_t unused[20];    // 16
    uint32_t code;         // 36
    uint16_t unused_end;   // 40
    uint16_t length;       // 42
};
static_assert(sizeof(BusHeader) == sizeof(MessageHeader), "one header, two views");

BusHeader LoadBusHeader(const MessageHeader* message);
void StoreBusHeader(MessageHeader* message, const BusHeader& header);

// A message as msgsnd and msgrcv take it.
struct QueueMessage
{
    long type;
    alignas(MessageHeader) char bytes[kMessageMax];
};

// The process's id is in the lower bits of the key of a client's private queue, the top bit is set.
inline constexpr int kClientKeyBit = static_cast<int>(0x80000000u);
inline constexpr int kProcessBits = 22;  // Linux: process ids stay below 4194304
inline constexpr int kProcessMask = (1 << kProcessBits) - 1;

// No other program has a reason to make a queue with this mode, in which execution means nothing: it tells a
// client's queue that was never used from a stranger's.
inline constexpr int kClientMode = 0700;
inline constexpr int kQueueMode = 0600;

key_t ClientKey(pid_t process, int slot);

// Whether only this user and root may use a queue or semaphore set, and open it to others. The one who made it may do
// so like its owner.
bool IsTrusted(const ipc_perm& of);

// Whether it is this user's alone.
bool IsOurs(const ipc_perm& of);

// False with errno EINVAL for the address that is no module's: the kernel would make a new queue or semaphore set at
// every look.
bool IsModule(uint32_t module);

// Takes the module for this process until it dies. The semaphore, or -1 with errno: EBUSY when a living process
// has it, EACCES or EPERM when another user's semaphore is in the way, ENOSPC when the system has none left.
int ClaimModule(uint32_t module);
void ReleaseModule(int claim);

// The semaphore of the module's claim, -1 when nobody ever had it; whether somebody has it now; the process that
// took it, 0 when the kernel does not tell.
int ModuleClaim(uint32_t module);
bool ClaimHolds(int claim);
pid_t ClaimHolder(int claim);

// The module's queue, or -1 when there is none. With `create` it is this user's alone, made anew where another
// user's lies and may be removed.
int ModuleQueue(uint32_t module, bool create);

// The module's queue where IsTrusted says so; -1 with errno EPERM when it is another user's.
int TrustedModuleQueue(uint32_t module);

// For root, whose queue a user's daemon could not use: gives it, or the semaphore, to that user. The one who made
// it, root, keeps the use of it.
void GiveQueue(int queue, uid_t owner);
void GiveClaim(int claim, uid_t owner);

// Sends within `budget_ms`, which shrinks by the time it took. 0; 3 no such queue; 5 it stayed full,
// or the kernel takes no message of that size.
int QueueSend(int queue, const MessageHeader* message, int* budget_ms);

// Gives our own queue that room when it was made while the kernel allowed less, which nothing else
// would ever change. False with errno when the kernel still allows no more.
bool WidenQueue(int queue);

// Removes the private queues of clients that have certainly left: those of this user, by their key, mode and
// the kernel's record of their use, with nothing but replies to them inside.
void ReclaimQueues();

// Removes the queues of the modules that listen to the daemon where nobody has the module any more.
void ReclaimModuleQueues();

}  // namespace kobd::host
