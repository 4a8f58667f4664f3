// The log writer: stamps a line, prints it, appends it to the log file, rotates the file once it
// has grown past its limit. Holds no state between calls.
#include "daemon/base/log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace
{
constexpr mode_t kLogMode = 0644;

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

int OpenLog() { return open(kobd::kLogFile, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kLogMode); }

// Moves a log that has passed the limit aside and opens a fresh one; -1 when that fails.
int RotateIfLarge(int file)
{
    if (lseek(file, 0, SEEK_END) <= kobd::kLogRotateBytes) return file;
    char rotated[64];
    snprintf(rotated, sizeof rotated, "%s.1", kobd::kLogFile);
    unlink(rotated);
    close(file);
    rename(kobd::kLogFile, rotated);
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
        WriteAll(STDOUT_FILENO, kFormatError, sizeof kFormatError - 1);
        return -1;
    }
    const size_t length = strlen(text);
    WriteAll(STDOUT_FILENO, text, length);
    AppendToFile(text, length);
    return 0;
}

int kobd_log_level() { return access(kobd::kDebugSwitchFile, F_OK) == 0 ? 1 : 0; }
