// What the log says when a state file could not be loaded.
#pragma once

#include <string>

#include "host/state/state_store.h"

namespace kobd::host
{
// Logs a result other than kLoaded and kMissing of loading WhatCounts(path) under the name of
// `function`, and keeps a damaged file aside. errno is that of the load.
// An unreadable one is left for the next start, which may be able to read it.
void ReportLoad(const char* function, const std::string& path, LoadResult result);

// To be called before the file is replaced: gives it a second name when it was unreadable, since what
// it holds is not in the values that replace it. It stays where it is until then: a commit may fail, and
// the next start be able to read it. False with errno when it cannot be kept.
bool KeepUnreadable(const std::string& path);
}  // namespace kobd::host
