// Making the running state durable, and finding it again.
#pragma once

namespace kobd::host
{
// Loads the committed state over the factory's. Called once, before the bus is joined.
void LoadState();
}  // namespace kobd::host
