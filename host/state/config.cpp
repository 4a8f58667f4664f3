// The configuration store of the host platform: file "config" of the state folder.
#include "platform/config.h"

#include "host/state/shared_store.h"

namespace
{
using kobd::host::FactoryValue;

constexpr FactoryValue kFactory[] = {
    {"cellular.roaming.enable", "0"},
    {"cellular.roaming.status", "Home"},
    {"cellular.interfacenumber", "1"},
    {"cellular.accesspointnumber", "2"},
};

constexpr kobd::host::SharedStore kStore("config", kFactory);
}  // namespace

int kob_get_config(const char* key, char* value, size_t size) { return kStore.Get(key, value, size); }
int kob_set_config(const char* key, const char* value) { return kStore.Set(key, value); }
