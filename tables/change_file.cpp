// Reads change files.
#include "tables/change_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>
#include <utility>

#include "daemon/result.h"

namespace kobd
{
namespace
{
int ReadOpen(int descriptor, ChangeFile* file)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return kSystemError;
    if (!std::in_range<size_t>(status.st_size)) return kMallocFailed;
    file->size = static_cast<size_t>(status.st_size);
    file->bytes.reset(new (std::nothrow) char[file->size]);
    if (file->bytes == nullptr) return kMallocFailed;
    return std::cmp_equal(read(descriptor, file->bytes.get(), file->size), file->size) ? kSuccess : kSystemError;
}
}  // namespace

int ChangeFileRead(const char* path, ChangeFile* file)
{
    // Without blocking, or a pipe that nobody writes to would stop the daemon at the open.
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) return kSystemError;
    const int code = ReadOpen(descriptor, file);
    close(descriptor);
    return code;
}
}  // namespace kobd
