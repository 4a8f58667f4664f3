// Reads change files.
#include "tables/change_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/records.h"

namespace kobd
{
namespace
{
int Refuse(const char* path, const char* why)
{
    LOG_ALWAYS("ChangeFileRead", "cannot read the change file %s: %s", path, why);
    return kSystemError;
}

int ReadOpen(int descriptor, const char* path, ChangeFile* file)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0) return Refuse(path, strerror(errno));
    if (!S_ISREG(status.st_mode)) return Refuse(path, "no regular file");
    if (std::cmp_greater(status.st_size, kRowsItemsBytes))
    {
        LOG_ALWAYS("ChangeFileRead", "the change file %s has %lld bytes, all rows of all tables need %zu", path,
                   static_cast<long long>(status.st_size), kRowsItemsBytes);
        return kMallocFailed;
    }
    file->size = static_cast<size_t>(status.st_size);
    file->bytes.reset(new (std::nothrow) char[file->size]);
    if (file->bytes == nullptr) return kMallocFailed;
    const ssize_t count = read(descriptor, file->bytes.get(), file->size);
    if (count < 0) return Refuse(path, strerror(errno));
    return std::cmp_equal(count, file->size) ? kSuccess : Refuse(path, "it was read in part only");
}
}  // namespace

int ChangeFileRead(const char* path, ChangeFile* file)
{
    // Without blocking, or a pipe that nobody writes to would stop the daemon at the open.
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) return Refuse(path, strerror(errno));
    const int code = ReadOpen(descriptor, path, file);
    close(descriptor);
    return code;
}
}  // namespace kobd
