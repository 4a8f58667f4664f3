// Running a command to its end within a deadline.
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>

#include "daemon/base/clock.h"
#include "daemon/base/shell_process.h"

namespace kobd
{
namespace
{
constexpr long kShortestLookNs = 50000;  // between looks at the shell, doubled each time
constexpr long kLongestLookNs = 5000000;

// A descriptor that becomes readable when the process ends; -1 where the kernel has none (Linux before 5.3).
int OpenProcess(pid_t process)
{
#ifdef SYS_pidfd_open
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
#else
    static_cast<void>(process);
    return -1;
#endif
}

// Waits for the end, for the deadline, or for a moment.
void WaitAMoment(int process, int64_t left_ms, long* look_ns)
{
    if (process >= 0)
    {
        pollfd end = {process, POLLIN, 0};
        poll(&end, 1, static_cast<int>(std::min<int64_t>(left_ms, INT_MAX)));
        return;
    }
    const timespec pause = {0, *look_ns};
    nanosleep(&pause, nullptr);
    *look_ns = std::min(*look_ns * 2, kLongestLookNs);
}
}  // namespace

int RunShell(const char* command, int64_t deadline)
{
    const pid_t process = StartShell(command, -1);
    if (process < 0) return kShellNotRun;
    const int descriptor = OpenProcess(process);
    int status = kShellOverdue;
    long look_ns = kShortestLookNs;
    bool ended = false;
    for (int64_t left = deadline - NowMs(); !(ended = ShellEnded(process, &status)) && left > 0;
         left = deadline - NowMs())
        WaitAMoment(descriptor, left, &look_ns);
    if (!ended) EndShell(process);
    if (descriptor >= 0) close(descriptor);
    if (!ended) return kShellOverdue;
    return status < 0 ? kShellKilled : status;
}
}  // namespace kobd
