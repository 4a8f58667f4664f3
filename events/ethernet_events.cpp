// Ethernet WAN: its link and its address come and go.
#include <sys/sysinfo.h>

#include <cstdio>
#include <cstring>

#include "daemon/base/messages.h"
#include "events/handlers.h"
#include "platform/connection.h"
#include "platform/nvram.h"

namespace kobd
{
int g_ethWanConnected = 0;

namespace
{
constexpr size_t kStatusBuffer = 128;  // "main_status" with its zero byte
constexpr size_t kTimeBuffer = 64;

// When the connection began, in whole seconds of uptime: a clock that nobody sets.
void StoreConnectedTime()
{
    struct sysinfo system = {};
    sysinfo(&system);
    char seconds[kTimeBuffer] = {};
    snprintf(seconds, sizeof seconds, "%ld", static_cast<long>(system.uptime));
    nvram_set("connected_time", seconds);
}
}  // namespace

int EvtEthernetIPAdd(MessageHeader* event)
{
    setDualwanNetSelectMode_lte("manual_select");
    StoreConnectedTime();
    ChangeConnectTime_net(0);
    updateDdns(3);
    ftpUpgrade(2);
    ntpUpdate(0);
    event->id = kEvtApnIPChange;  // to the other modules it is an address change like any other
    Forward(event, kModuleNotify, "EvtEthernetIPAdd");
    Forward(event, kModuleForward, "EvtEthernetIPAdd");
    voipD2Vapp(2);
    g_ethWanConnected = 1;
    return 0;
}

int EvtEthernetIPDel(MessageHeader*)
{
    voipD2Vapp(3);
    return 0;
}

int EvtEthernetUp(MessageHeader*)
{
    nvram_set("eth_status", "1");
    KobdEvtSend(kModuleServices, kEventConnectionChanged, nullptr, 0);
    return 0;
}

int EvtEthernetDown(MessageHeader*)
{
    char main_status[kStatusBuffer] = {};
    nvram_cpy("main_status", main_status, sizeof main_status);
    // While the cellular connection carries the traffic its time runs on.
    if (strcmp(main_status, "connected") != 0) nvram_set("connected_time", "0");
    nvram_set("eth_status", "0");
    KobdEvtSend(kModuleServices, kEventConnectionChanged, nullptr, 0);
    setDualwanNetSelectMode_lte("auto_select");
    voipD2Vapp(3);
    g_ethWanConnected = 0;
    return 0;
}
}  // namespace kobd
