// Handlers of the network events: they keep the connection state in nvram and drive the services
// that need a WAN. Ethernet WAN goes before the cellular network: while it has an address, cellular
// events leave those services alone.
#pragma once

#include "platform/message.h"

namespace kobd
{
// 1 from the moment Ethernet WAN has an address until its link goes down, losing the address alone
// does not count; else 0. Only the event handlers use it, one at a time.
extern int g_ethWanConnected;

// Each takes a message that the bus has checked for length, answers nothing and returns 0. What the
// platform says to the calls is not looked at: there is nobody to tell.
int EvtApnChange(MessageHeader* event);
int EvtApnIPChange(MessageHeader* event);
int EvtNetworkUp(MessageHeader* event);
int EvtNetworkDown(MessageHeader* event);
int EvtPCscfIPChange(MessageHeader* event);
int EvtEthernetUp(MessageHeader* event);
int EvtEthernetDown(MessageHeader* event);
int EvtEthernetIPAdd(MessageHeader* event);
int EvtEthernetIPDel(MessageHeader* event);

// Sends the received message on to `module`, changing its destination in place. A full queue costs
// at most what the bus allows, then a log line under `function`.
void Forward(MessageHeader* event, uint32_t module, const char* function);
}  // namespace kobd
