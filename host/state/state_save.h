// The steps that all writers of the state folder have in common.
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

// Opens a file of the state folder with these flags (without O_CREAT), mode 0600 when it has to be made first. No link
// is followed: root may be working in the folder of a user. A file that root makes there is the folder's owner's, whose
// daemon has to read it. -1 with errno.
int OpenOrCreate(const std::string& path, int flags);

// The folder of a path, ending with a slash; "." where it names none.
std::string FolderOf(const std::string& path);

// Removes a file and leaves errno, which says what went wrong before.
void RemoveKeepingError(const std::string& path);
}  // namespace kobd::host
