// The non-volatile store of the host platform: file "nvram" of the state folder.
#include "platform/nvram.h"

#include "host/state/shared_store.h"

namespace
{
using kobd::host::FactoryValue;

constexpr FactoryValue kFactory[] = {
    // What the radio module supports: band numbers of 3GPP TS 36.101 (LTE) and TS 38.101 (NR).
    {"suppband", "1 3 7 8 20 28 38 40 41"},
    {"suppband5g", "1 3 28 78"},
    // Which APN profiles are in use, and the number of the one that carries the default route.
    {"apn1_enable", "1"},
    {"apn2_enable", "1"},
    {"apn3_enable", "0"},
    {"apn4_enable", "0"},
    {"default_gateway", "1"},
    // The connection state. "connected_time": seconds of uptime when Ethernet WAN got its address.
    {"main_status", "connected"},
    {"eth_status", "0"},
    {"lte_status", "1"},
    {"connected_time", "0"},
    {"dualwan_net_select_mode", "auto_select"},
    // The WAN interface in use by the management agent, by voice and by SNMP.
    {"wan_interface_tr069", "rmnet_data0"},
    {"wan_interface_voip", "rmnet_data1"},
    {"wan_interface_snmp", "rmnet_data0"},
};

constexpr kobd::host::SharedStore kStore("nvram", kFactory);
}  // namespace

int nv_get(const char* key, char* value, size_t size) { return kStore.Get(key, value, size); }
int nvram_cpy(const char* key, char* value, size_t size) { return kStore.Get(key, value, size); }
int nvram_set(const char* key, const char* value) { return kStore.Set(key, value); }
