// The step that saving one state file and saving several have in common.
#pragma once

#include <string>

#include "host/state/state_store.h"

namespace kobd::host
{
// Writes the settings to `path` and waits until they are on the disk. False with errno, and no file,
// when that failed.
bool WriteTemporary(const std::string& path, const Settings& settings);

// As WriteTemporary for any text.
bool WriteText(const std::string& path, std::string_view text);

// Removes a file and leaves errno, which says what went wrong before.
void RemoveKeepingError(const std::string& path);
}  // namespace kobd::host
