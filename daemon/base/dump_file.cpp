// Opens dump files without following links that somebody laid in the shared folder.
#include "daemon/base/dump_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "daemon/base/log.h"
#include "daemon/base/result.h"

namespace kobd
{
namespace
{
constexpr int kDumpNumbers = 10000000;  // of kDumpFileDigits
constexpr int kAttempts = 16;           // fresh numbers before giving up
constexpr mode_t kDumpMode = 0600;

void Report(const char* function, const char* name, int error)
{
    LOG_ALWAYS(function, "cannot write %s: %s", name, strerror(error));
}

// A regular file of ours, emptied; -1 with errno when the name cannot be used.
int OpenPlainFile(const char* name)
{
    const int file = open(name, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kDumpMode);
    if (file < 0) return -1;
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_uid == geteuid() &&
        fchmod(file, kDumpMode) == 0 && ftruncate(file, 0) == 0)
        return file;
    close(file);
    errno = EEXIST;
    return -1;
}

FILE* OpenStream(int file, const char* name)
{
    FILE* stream = fdopen(file, "w");
    if (stream != nullptr) return stream;
    const int error = errno;
    close(file);
    unlink(name);
    errno = error;
    return nullptr;
}

FILE* Open(char* name)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt)
    {
        snprintf(name, kDumpFileName, "%s%d", kDumpFilePrefix, rand() % kDumpNumbers);
        const int file = OpenPlainFile(name);
        if (file >= 0) return OpenStream(file, name);
        if (errno == ENOSPC || errno == EROFS || errno == EACCES) return nullptr;
    }
    return nullptr;
}
}  // namespace

FILE* DumpFileOpen(const char* function, char* name)
{
    FILE* file = Open(name);
    if (file == nullptr) Report(function, name, errno);
    return file;
}

int DumpFileClose(const char* function, FILE* file, const char* name, int code)
{
    int error = errno;
    const bool closed = fclose(file) == 0;
    if (code == kSuccess && closed) return kSuccess;
    if (code == kSuccess)
    {
        error = errno;
        code = kSystemError;
    }
    unlink(name);
    if (code == kSystemError) Report(function, name, error);
    return code;
}
}  // namespace kobd
