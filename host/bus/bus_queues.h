// How the host's message bus lies on System V queues: shared by the daemon's and the client's side.
//
// One queue a module, key = module address, mode 0600; a client has a private queue whose key
// holds its process id, so that the queues of killed clients can be told and removed. A semaphore
// with the module's key is 1 while a process has the module; the kernel gives it back when the
// process dies, however it dies.
#pragma once

#include <sys/types.h>

#include <cstdint>

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

// Key of a client's private queue.
key_t ClientKey(pid_t process, int slot);

// Takes the module for this process until it dies. The semaphore, or -1 when somebody has it.
int ClaimModule(uint32_t module);
void ReleaseModule(int claim);

// The semaphore of the module's claim, -1 when nobody ever had it; whether somebody has it now.
int ModuleClaim(uint32_t module);
bool ClaimHolds(int claim);

// The module's queue, or -1 when there is none. With `create` it is this user's alone, made anew where another
// user's lies and may be removed.
int ModuleQueue(uint32_t module, bool create);

// Sends within `budget_ms`, which shrinks by the time it took. 0; 3 no such queue; 5 it stayed full,
// or the kernel takes no message of that size.
int QueueSend(int queue, const MessageHeader* message, int* budget_ms);

// Gives our own queue that room when it was made while the kernel allowed less, which nothing else
// would ever change. False with errno when the kernel still allows no more.
bool WidenQueue(int queue);

// Removes the private queues of processes that are gone.
void ReclaimQueues();

int64_t NowMs();
}  // namespace kobd::host
