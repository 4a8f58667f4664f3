// Dump files: "/tmp/kobd-%d" with a random number, written by show and by table dump.
#pragma once

#include <cstdio>

namespace kobd
{
inline constexpr int kDumpFileName = 128;  // bytes of a dump file's name with its zero byte

// Opens a dump file of mode 0600 for writing and puts its name into `name` (kDumpFileName bytes).
// A name that is a link or not a plain file is passed over for a fresh number. nullptr when none
// could be opened. The caller closes it, and removes it when writing fails.
FILE* DumpFileOpen(char* name);
}  // namespace kobd
