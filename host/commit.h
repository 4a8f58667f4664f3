// Making the running state durable, and finding it again.
#pragma once

namespace kobd::host
{
// Loads the committed state over the factory's, and waits for memory where there is too little. Called once, when the
// daemon has its module and before it receives.
void LoadState();
}  // namespace kobd::host
