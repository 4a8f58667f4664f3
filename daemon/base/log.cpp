// The log writer: stamps a line, prints it, appends it to the log file, rotates the file once it
// has grown past its limit. Holds no state between calls.
#include "daemon/base/log.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace
{
constexpr mode_t kLogMode = 0600;  // lines name refused values, passwords among them

// Writes all bytes; gives up on an error, since there is nowhere left to report it.
void WriteAll(int file, const char* bytes, size_t length)
{
    while (length > 0)
    {
        const ssize_t written = write(file, bytes, length);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        bytes += written;
        length -= static_cast<size_t>(written);
    }
}

// Opens a pipe or terminal once more, for the flags of the inherited one are its other users' too. -1 for
// anything else, and where the system does not let us.
int OpenOutputAgain()
{
    struct stat status;
    if (fstat(STDOUT_FILENO, &status) != 0 || !(S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode))) return -1;
    return open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

// Standard output may be a pipe or terminal that nobody reads, or a terminal that was stopped. What it cannot
// take at once is dropped. Only a pipe that poll calls writable takes a whole line, of PIPE_BUF bytes at most:
// a terminal may have room for less, and another thread may be first.
static_assert(kobd::kLogLineMax <= PIPE_BUF);
void PrintLine(const char* bytes, size_t length)
{
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    if (poll(&output, 1, 0) != 1 || (output.revents & POLLOUT) == 0) return;
    const int again = OpenOutputAgain();
    WriteAll(again < 0 ? STDOUT_FILENO : again, bytes, length);
    if (again >= 0) close(again);
}

// Opens the log, which is a plain file of the daemon's own user; -1 where something else has its name.
int OpenLog()
{
    const int file =
        open(kobd::kLogFile, O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kLogMode);
    if (file < 0) return -1;
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_uid == geteuid() &&
        ((status.st_mode & ~S_IFMT) == kLogMode || fchmod(file, kLogMode) == 0))
        return file;
    close(file);
    return -1;
}

// Moves a log that has passed the limit aside and opens a fresh one; -1 when that fails. A log that cannot
// be moved, because a folder has the other name, is emptied: it must not grow without bound.
int RotateIfLarge(int file)
{
    if (lseek(file, 0, SEEK_END) <= kobd::kLogRotateBytes) return file;
    char rotated[64];
    snprintf(rotated, sizeof rotated, "%s.1", kobd::kLogFile);
    unlink(rotated);
    if (rename(kobd::kLogFile, rotated) != 0 && ftruncate(file, 0) == 0) return file;
    close(file);
    return OpenLog();
}

void AppendToFile(const char* line, size_t length)
{
    int file = OpenLog();
    if (file < 0) return;
    file = RotateIfLarge(file);
    if (file < 0) return;
    WriteAll(file, line, length);
    close(file);
}
}  // namespace

int kobd_log_print(const char* function, int line, const char* format, ...)
{
    char stamp[32];
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    strftime(stamp, sizeof stamp, "%Y/%m/%d  %H:%M:%S", &local);

    char text[kobd::kLogLineMax + 1] = {};
    const int prefix = snprintf(text, sizeof text, "\n%s %s[%d]: ", stamp, function != nullptr ? function : "", line);
    const size_t used = prefix < 0 ? 0 : prefix > kobd::kLogLineMax ? kobd::kLogLineMax : size_t(prefix);

    va_list arguments;
    va_start(arguments, format);
    const int message = format != nullptr ? vsnprintf(text + used, sizeof text - used, format, arguments) : -1;
    va_end(arguments);
    if (message < 0)
    {
        static const char kFormatError[] = "format error\n";
        PrintLine(kFormatError, sizeof kFormatError - 1);
        return -1;
    }
    const size_t length = strlen(text);
    PrintLine(text, length);
    AppendToFile(text, length);
    return 0;
}

int kobd_log_level() { return access(kobd::kDebugSwitchFile, F_OK) == 0 ? 1 : 0; }
