// The connection services that network events drive, and what the platform knows of its WAN
// interfaces. Results are not looked at.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr int kWanInterfaceName = 20;  // bytes of a record, which begins with the name
inline constexpr int kWanInterfaceMax = 10;   // records

struct ConfigWanInterfaces
{
    char interface[kWanInterfaceMax][kWanInterfaceName];  // record i - 1 belongs to APN i
    uint32_t count;                                       // WAN interfaces configured
};

extern "C"
{
    extern ConfigWanInterfaces g_stConfigWANIF;

    int setDualwanNetSelectMode_lte(const char* mode);  // "manual_select" or "auto_select"
    int ChangeConnectTime_net(int cellular);            // 1 starts the cellular connection's time, 0 ends it
    int updateDdns(int reason);
    int ftpUpgrade(int reason);
    int ntpUpdate(int reason);
    int killFtpUpgradeDaemon();
    int voipD2Vapp(int event);  // 2 a WAN address was gained, 3 it was lost
    int volteD2Vapp(int event);

    // Sends event `id` with `length` bytes of `data` to `module`. 0 or the bus's code.
    int KobdEvtSend(uint32_t module, uint16_t id, const void* data, int length);

    // The name of the WAN interface in use by the management agent, by voice and by SNMP, into
    // `name` of `size` bytes.
    int getWanInterfaceCurrentTr069_net(char* name, size_t size);
    int getWanInterfaceCurrentVOIP_net(char* name, size_t size);
    int getCurrWanInterfaceSNMP_net(char* name, size_t size);

    // The number of configured WAN (APN) profiles as decimal text. It is the get accessor of
    // networkWanSettingsCount as well: `count` has the room of an object get, 2048 bytes.
    int getWanSetCount_net(char* count);
}
