// The accessors of the cellular summary objects: keys of the configuration store.
#include <cstddef>

#include "cellular/cellular_lists.h"
#include "platform/config.h"

namespace
{
constexpr size_t kValueBytes = 2048;  // of the buffer that an object get hands over
constexpr const char* kRoamingEnable = "cellular.roaming.enable";

int Read(const char* key, char* value)
{
    kob_get_config(key, value, kValueBytes);
    return 0;
}
}  // namespace

int cellularRoamingEnableGet(char* value) { return Read(kRoamingEnable, value); }

int cellularRoamingEnableSet(const char* value)
{
    kob_set_config(kRoamingEnable, value);
    return 0;
}

int cellularRoamingStatusGet(char* value) { return Read("cellular.roaming.status", value); }
int cellularInterfaceNumberGet(char* value) { return Read("cellular.interfacenumber", value); }
int cellularAccessPointNumberGet(char* value) { return Read("cellular.accesspointnumber", value); }
