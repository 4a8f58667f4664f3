// The detached kobctl that takes back a pending set when its time is up, and the locks of the state folder.
#pragma once

namespace kobd::client
{
// Starts the process and returns once it has closed everything that it inherited. False with errno.
[[nodiscard]] bool StartWaiting();

// Opens and locks a file of the state folder, within two seconds. -1 with errno, EWOULDBLOCK when another process keeps
// the lock. Closing the file ends the lock.
int OpenLocked(const char* name);
}  // namespace kobd::client
