// Running commands within the time of a request.
#include "cellular/commands.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>

#include "daemon/base/clock.h"
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "daemon/base/shell_process.h"
#include "platform/shell.h"

namespace kobd
{
namespace
{
constexpr int64_t kCommandMs = 10000;
constexpr int64_t kRequestMs = 60000;

// What the shell exits with when it cannot run a command, in POSIX: 126 it cannot be executed, 127 there is
// none of that name, above 128 a signal ended it.
constexpr int kCannotExecute = 126;

// The time of the request in hand, which its first command begins.
struct Time
{
    std::optional<uint32_t> request;
    int64_t deadline = 0;
    bool told = false;
};
Time time_of_request;

Time& TimeOfRequest()
{
    if (time_of_request.request != RequestNumber()) time_of_request = {RequestNumber(), NowMs() + kRequestMs};
    return time_of_request;
}

void Tell(const char* function, const char* name, const char* what)
{
    if (!TimeOfRequest().told) LOG_ALWAYS(function, "%s: %s", name, what);
    TimeOfRequest().told = true;
}

bool TimeIsLeft(const char* function, const char* name)
{
    if (NowMs() < TimeOfRequest().deadline) return true;
    Tell(function, name, "not run, the commands of this request have taken 60 seconds");
    return false;
}

bool WasRun(int status) { return status >= 0 && status < kCannotExecute; }
}  // namespace

bool ReadCommand(const char* function, const char* name, const ShellCommand& command, Part part, char* output,
                 size_t size)
{
    *output = 0;
    if (!TimeIsLeft(function, name)) return false;
    const auto runner = part == Part::kAll ? shell_cmd_return_file_all : shell_cmd_return_str;
    const bool run = WasRun(runner(command.Text(), output, size));
    if (!run) Tell(function, name, "it could not be run, or did not end within 10 seconds");
    return run;
}

void RunCommand(const char* function, const char* name, const ShellCommand& command)
{
    if (!TimeIsLeft(function, name)) return;
    const int status = RunShell(command.Text(), std::min(TimeOfRequest().deadline, NowMs() + kCommandMs));
    if (status == kShellNotRun)
        Tell(function, name, strerror(errno));
    else if (status == kShellOverdue)
        Tell(function, name, "ended, because it did not end by itself in time");
    else if (!WasRun(status))
        Tell(function, name, "it could not be run to its end");
    else if (status != 0)
        Tell(function, name, "it failed, what it was to store may be lost");
}
}  // namespace kobd
