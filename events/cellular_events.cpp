// The cellular network: the data connection comes and goes, an APN or an address changes.
#include <strings.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>

#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "events/handlers.h"
#include "platform/connection.h"
#include "platform/nvram.h"

namespace kobd
{
namespace
{
constexpr int kVolteApn = 2;              // the APN that carries voice calls (IMS)
constexpr size_t kInterfaceBuffer = 128;  // name of a WAN interface with its zero byte

// The decimal number at the start of the payload, which need not end with a zero byte; 0 where
// there is none. Numbers beyond 32 bits stop at the largest, whatever the size of long.
int PayloadNumber(const MessageHeader* event)
{
    std::array<char, kPayloadMax + 1> text = {};
    const auto payload = Payload(event);
    std::copy_n(payload.begin(), std::min(payload.size(), kPayloadMax), text.begin());
    return static_cast<int>(std::clamp<long long>(strtoll(text.data(), nullptr, 10), INT_MIN, INT_MAX));
}

// Whether the interface that `current` names is the one of this APN.
bool Uses(int (*current)(char*, size_t), int apn)
{
    char name[kInterfaceBuffer] = {};
    current(name, sizeof name);
    return strncasecmp(name, g_stConfigWANIF.interface[apn - 1], kWanInterfaceName) == 0;
}
}  // namespace

int EvtNetworkUp(MessageHeader*)
{
    nvram_set("lte_status", "1");
    KobdEvtSend(kModuleServices, kEventConnectionChanged, nullptr, 0);
    if (g_ethWanConnected == 0) ChangeConnectTime_net(1);
    return 0;
}

int EvtNetworkDown(MessageHeader*)
{
    nvram_set("lte_status", "0");
    KobdEvtSend(kModuleServices, kEventConnectionChanged, nullptr, 0);
    if (g_ethWanConnected != 0) return 0;
    ChangeConnectTime_net(0);
    killFtpUpgradeDaemon();
    voipD2Vapp(3);
    volteD2Vapp(2);
    return 0;
}

int EvtApnChange(MessageHeader*)
{
    if (g_ethWanConnected != 0) return 0;
    updateDdns(3);
    ftpUpgrade(2);
    ntpUpdate(0);
    return 0;
}

int EvtApnIPChange(MessageHeader* event)
{
    if (g_ethWanConnected != 0) return 0;
    const int apn = PayloadNumber(event);
    LOG_ALWAYS("EvtApnIPChange", "EvtApnIPChange index %d \n", apn);
    if (apn < 1 || apn > kApnMax) return 0;
    if (Uses(getWanInterfaceCurrentTr069_net, apn)) Forward(event, kModuleNotify, "EvtApnIPChange");
    if (Uses(getWanInterfaceCurrentVOIP_net, apn)) voipD2Vapp(2);
    if (apn == kVolteApn) volteD2Vapp(1);
    if (Uses(getCurrWanInterfaceSNMP_net, apn)) Forward(event, kModuleForward, "EvtApnIPChange");
    return 0;
}

int EvtPCscfIPChange(MessageHeader*)
{
    volteD2Vapp(1);
    return 0;
}
}  // namespace kobd
