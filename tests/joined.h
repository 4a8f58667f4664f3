// Joining the bus as the daemon does, and waiting until that is done.
#pragma once

#include <unistd.h>

#include "platform/bus_client.h"

namespace kobd::test
{
inline bool AwaitModule(uint32_t module)
{
    BusModule seen;
    for (int look = 0; look < 5000; ++look, usleep(1000))
        if (BusModuleLook(module, &seen) == 0 && seen.claimed && seen.queue) return true;
    return false;
}

inline int Join(uint32_t module)
{
    const int code = MessageInitialize(module);
    return code != 0 || AwaitModule(module) ? code : -1;
}
}  // namespace kobd::test
