// Runs the shell commands of one request. Each may take ten seconds, all together sixty: a uci that hangs
// must not stop the daemon. Only the first failure of a request is logged.
#pragma once

#include <cstddef>

#include "cellular/shell_command.h"

namespace kobd
{
enum class Part
{
    kAll,        // of what the command prints
    kFirstLine,  // without its line end
};

// Runs a command and keeps what it prints, at most `size` bytes with the zero byte. False when the command
// could not be run or did not end in time: what it printed is then no answer.
//   function, name: for the log line
[[nodiscard]] bool ReadCommand(const char* function, const char* name, const ShellCommand& command, Part part,
                               char* output, size_t size);

// Runs a command that prints nothing. A failure is logged and has no other effect.
void RunCommand(const char* function, const char* name, const ShellCommand& command);
}  // namespace kobd
