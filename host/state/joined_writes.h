// The daemon's file system for SQLite, in which a commit of up to three pages writes the log once instead of twice a
// page.
#pragma once

#include "host/state/database.h"

namespace kobd::host
{
// That file system, for one connection at a time. The first call makes it, and has to come before anything else uses
// SQLite. nullptr, which stands for SQLite's own file system, when memory runs out.
const DatabaseFiles* JoinedWrites();
}  // namespace kobd::host
