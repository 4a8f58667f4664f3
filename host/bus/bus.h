// What the rest of the host platform tells its bus library, beyond the calls of platform/message.h.
#pragma once

namespace kobd::host
{
// The function is called whenever the process has got its module, before the first message is received. Until then
// another process may have the module and be writing the state.
void BusBeforeServing(void (*prepare)());

// Whether this library was asked to join. It was not where the router's own bus library stands before it.
bool BusIsUsed();
}  // namespace kobd::host
