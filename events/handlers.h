// Handlers of the network events: they keep the connection state in nvram and drive the services
// that need a WAN. Ethernet WAN takes precedence over the cellular network: while it has an address,
// cellular events leave those services alone.
#pragma once

#include "platform/message.h"

namespace kobd
{
// 1 from the moment Ethernet WAN gets an address until its link goes down, else 0. The loss of the address
// alone does not change it. Only the event handlers use it, one at a time.
extern int g_ethWanConnected;

// Each takes a message whose length the bus has checked, sends no answer and returns 0. The results of the
// platform's functions are ignored: nobody could be told.
int EvtApnChange(MessageHeader* event);
int EvtApnIPChange(MessageHeader* event);
int EvtNetworkUp(MessageHeader* event);
int EvtNetworkDown(MessageHeader* event);
int EvtPCscfIPChange(MessageHeader* event);
int EvtEthernetUp(MessageHeader* event);
int EvtEthernetDown(MessageHeader* event);
int EvtEthernetIPAdd(MessageHeader* event);
int EvtEthernetIPDel(MessageHeader* event);

// Sends the received message on to `module`, changing its destination in place. When the module's queue is
// full for as long as the bus waits, the message is dropped, with a log line under `function`.
void Forward(MessageHeader* event, uint32_t module, const char* function);
}  // namespace kobd
