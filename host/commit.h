// Making the running state durable, and finding it again.
#pragma once

#include <string>
#include <vector>

namespace kobd::host
{
// Loads the committed state over the factory's, and waits for memory where there is too little. Called once, when the
// daemon has its module and before it receives.
void LoadState();

// Around each request that the bus hands to the daemon: what it sets in the stores becomes durable in one commit with
// its objects and rows.
void BeginRequest();
void EndRequest();

// Why the last commit failed, as long as none has caught up with it; else the empty text.
std::string WhyNotSaved();

// The objects and tables that were changed since the last commit. A restart loses these changes.
std::vector<std::string> NotSaved();
}  // namespace kobd::host
