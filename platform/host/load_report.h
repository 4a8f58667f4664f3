// What the log says when a state file could not be loaded.
#pragma once

#include <string>

#include "platform/host/state_store.h"

namespace kobd::host
{
// Logs a result other than kLoaded and kMissing under the name of `function`, and keeps a damaged
// file aside. errno is that of the load.
void ReportLoad(const char* function, const std::string& path, LoadResult result);
}  // namespace kobd::host
