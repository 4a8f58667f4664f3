// Runs a command in a shell that can be waited for and ended. The C library's system() ignores
// SIGINT and SIGQUIT for the whole process as long as the command runs, and waits without end.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace kobd
{
// Starts "/bin/sh -c command" in a new process group, with no signal blocked or ignored.
//   output: descriptor for its standard output; -1 leaves it the daemon's
// The process, which ShellEnded or EndShell must take; -1 with errno when there is none.
pid_t StartShell(const char* command, int output);

// Takes the exit status of a shell that has ended: 0 to 255, or -1 when a signal ended it. False while it
// runs. Where the process ignores SIGCHLD the kernel keeps no status, and the status is 0.
bool ShellEnded(pid_t process, int* status);

// Ends the shell with all that it started in its group, and takes it.
void EndShell(pid_t process);

inline constexpr int kShellNotRun = -1;   // errno says why
inline constexpr int kShellOverdue = -2;  // it was ended at the deadline
inline constexpr int kShellKilled = -3;   // a signal ended it

// Runs a command to its end, or ends it at `deadline` (NowMs). Its exit status, or one of the above.
int RunShell(const char* command, int64_t deadline);
}  // namespace kobd
