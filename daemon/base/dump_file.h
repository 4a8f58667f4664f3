// Dump files: written by show and by table dump, read and removed by the client. What fails is logged under
// the name of `function`.
#pragma once

#include <cstdio>

namespace kobd
{
inline constexpr char kDumpFilePrefix[] = "/tmp/kobd-";  // a random number of 1 to 7 digits follows
inline constexpr int kDumpFileDigits = 7;
inline constexpr int kDumpFileName = 128;  // bytes of a dump file's name with its zero byte

// Opens a dump file of mode 0600 for writing and puts its name into `name` (kDumpFileName bytes).
// A name that is a link or not a plain file is passed over for a fresh number. nullptr when none
// could be opened.
FILE* DumpFileOpen(const char* function, char* name);

// Closes a dump file, and removes it when it is not whole.
//   code: result of writing it, with errno where that is 4
// The code; 4 when what was written before fails now.
[[nodiscard]] int DumpFileClose(const char* function, FILE* file, const char* name, int code);
}  // namespace kobd
