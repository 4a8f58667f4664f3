// Reading and removing dump files without trusting the name that came over the bus.
#include "client/requests/dump_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace kobd::client
{
namespace
{
constexpr std::string_view kDumpPrefix = "/tmp/kobd-";
constexpr size_t kDumpDigits = 7;

bool IsDumpName(std::string_view path)
{
    if (!path.starts_with(kDumpPrefix)) return false;
    path.remove_prefix(kDumpPrefix.size());
    return !path.empty() && path.size() <= kDumpDigits &&
           path.find_first_not_of("0123456789") == std::string_view::npos;
}
}  // namespace

bool ReadAll(int file, std::string* bytes)
{
    char part[16384];
    for (;;)
    {
        const ssize_t count = read(file, part, sizeof part);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        bytes->append(part, static_cast<size_t>(count));
    }
}

std::string TakeDumpFile(const std::string& path, std::string* bytes)
{
    if (!IsDumpName(path)) return "the reply names '" + path + "', which is no dump file; it was left alone";
    const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return "cannot open the dump file " + path + ": " + strerror(errno);
    struct stat status;
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
    {
        close(file);
        return path + " is not a plain file; it was left alone";
    }
    // Removed before it is read: what follows may fail or be interrupted.
    const bool removed = unlink(path.c_str()) == 0;
    const int remove_error = errno;
    const bool whole = ReadAll(file, bytes);
    const int read_error = errno;
    close(file);
    if (!whole) return "cannot read the dump file " + path + ": " + strerror(read_error);
    return removed ? "" : "cannot remove the dump file " + path + ": " + strerror(remove_error);
}
}  // namespace kobd::client
