// Reading and removing dump files without trusting the name that came over the bus.
#include "client/requests/dump_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "client/arguments/input_file.h"
#include "daemon/base/result.h"

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

Failure TakeDumpFile(const Response& response, std::string* bytes)
{
    if (response.items.empty()) return {kSystemError, "the reply names no file"};
    const std::string path = response.items[0].text;
    if (!IsDumpName(path))
        return {kSystemError, "the reply names '" + path + "', which is no dump file; it was left alone"};
    const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return SystemFailure("cannot open the dump file " + path);
    struct stat status;
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
    {
        close(file);
        return {kSystemError, path + " is not a plain file; it was left alone"};
    }
    // Removed before it is read: what follows may fail or be interrupted.
    Failure failure;
    if (unlink(path.c_str()) != 0) failure = SystemFailure("cannot remove the dump file " + path);
    if (!ReadAll(file, bytes)) failure = SystemFailure("cannot read the dump file " + path);
    close(file);
    return failure;
}
}  // namespace kobd::client
