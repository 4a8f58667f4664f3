// The client's side of the message bus: one request and its reply, and joining as a module that
// only listens. Every call has a deadline; none blocks for ever.
#pragma once

#include "platform/message.h"

struct BusClient
{
    int queue = -1;       // private queue for replies, or the module's queue
    int slot = 0;         // which of this process's private queues
    uint32_t module = 0;  // 0 for a plain client
    int claim = -1;       // semaphore that holds the module, -1 for a plain client
    uint32_t sequence = 0;
    int process = 0;             // that opened it; a child opens a connection of its own
    unsigned forks = 0;          // that lay before it
    uint32_t destination = 0;    // module of the last message, with its claim and queue
    int destination_claim = -1;  // semaphore
    int destination_queue = -1;
};

// What can be seen of a module from outside.
struct BusModule
{
    bool claimed = false;   // a living process has it
    bool queue = false;     // it has a queue
    uint64_t messages = 0;  // waiting in the queue
    uint64_t capacity = 0;  // bytes the queue holds
    uint32_t owner = 0;     // user id of the queue's owner
    int32_t process = 0;    // that has it; 0: none, or one that cannot be seen from here
};

// What a tap tells of a message that passed the daemon.
enum BusTapKind : uint16_t
{
    kTapReceived = 1,  // a request or an event came in
    kTapAnswered = 2,  // the reply to the request that came in last
    kTapSent = 3,      // the daemon sent an announcement or an event to a module, which may not be there
};

struct BusTapped
{
    int64_t time_us;   // since 1970
    uint64_t took_ns;  // of a reply: since its request came in; else 0
    uint32_t process;  // that sent the request in hand; 0 for none
    BusTapKind kind;
    char program[18];  // its name as the system has it, 15 characters at most; empty when it is not known
};

struct BusTap;

extern "C"
{
    // Taps the daemon: from here on every message that passes it is copied for this process. `client` is used for the
    // request alone. 0; 7; 9 when the system gives no shared memory; else as BusClientCall. *tap is nullptr after a
    // failure.
    int BusTapOpen(BusClient* client, BusTap** tap, int timeout_ms);
    void BusTapClose(BusTap* tap);

    // Takes the next copy; `message` has kMessageMax bytes. *missed is how many were lost before it because they were
    // not taken in time. 0; 3 the daemon has ended and there is no further copy; 8 nothing came in time.
    int BusTapNext(BusTap* tap, BusTapped* tapped, MessageHeader* message, uint32_t* missed, int timeout_ms);

    // Looks at a module's queue without joining. 0, also when there is no queue; or an errno, such as
    // EACCES when the queue is another user's.
    int BusModuleLook(uint32_t module, BusModule* look);

    // Opens a connection with a private reply queue. 0 or 9. Close with BusClientClose.
    int BusClientOpen(BusClient* client);

    // Joins as `module` to receive what is sent to it. 0, or 9 when the module is taken.
    int BusClientJoin(BusClient* client, uint32_t module);

    // Removes the queue and gives the module back; in a child of the process that opened it, neither. Harmless on a
    // connection that is not open.
    void BusClientClose(BusClient* client);

    // Sends the request to its destination and waits for its reply.
    //   reply: kMessageMax bytes; timeout_ms: for sending and waiting together
    // 0; 3 nobody has the module; 5 the queue stayed full, or the kernel takes no message of that size;
    // 8 no reply in time; 9 not open, or opened by the parent of this process.
    int BusClientCall(BusClient* client, MessageHeader* request, MessageHeader* reply, int timeout_ms);

    // Sends without waiting for an answer. 0, 3, 5 or 9. A reply that finds the client's queue full is dropped, and
    // the queue holds 16384 bytes: answers to more than that are read before more is asked.
    int BusClientSend(BusClient* client, MessageHeader* message, int timeout_ms);

    // Takes the next message from the client's queue; `message` has kMessageMax bytes.
    // 0; 8 nothing arrived in time; 9 the queue is gone, or the parent's.
    int BusClientReceive(BusClient* client, MessageHeader* message, int timeout_ms);
}
