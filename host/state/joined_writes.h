// The daemon's file system for SQLite: what a commit writes to the log goes there in one write instead of two a page.
#pragma once

namespace kobd::host
{
// The name of that file system, which is made at the first call. nullptr when memory runs out, which SQLite takes for
// its own file system.
const char* JoinedWrites();
}  // namespace kobd::host
