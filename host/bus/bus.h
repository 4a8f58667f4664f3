// What the rest of the host platform tells its bus library, beyond the calls of platform/message.h.
#pragma once

#include <cstdint>

#include "platform/message.h"

namespace kobd::host
{
// Functions that the bus library calls; a nullptr is not called.
struct BusHooks
{
    // Whenever the process has got its module, before the first message is received. Until then another process may
    // have the module and be writing the state.
    void (*prepare)() = nullptr;

    // Before and after each message that is handed to the daemon.
    void (*begin)() = nullptr;
    void (*end)() = nullptr;

    // Answers a message of class 9, which is for the imitated router itself.
    void (*control)(MessageHeader* request) = nullptr;
};
void BusCall(const BusHooks& hooks);

// The message that this thread handles, as its header has it: process id of its sender, id and class. Zeros when there
// is none.
struct RequestInHand
{
    uint32_t sender = 0;
    uint32_t code = 0;
    int32_t connection = 0;  // of its sender's connections
};
RequestInHand BusRequest();

// The name of the program that sent it, as the system has it; empty when that is not known.
const char* BusProgram();

// Whether this library was asked to join. It was not where the router's own bus library stands before it.
bool BusIsUsed();
}  // namespace kobd::host
