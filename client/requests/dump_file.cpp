// Reading and removing dump files without trusting the name that came over the bus.
#include "client/requests/dump_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "client/arguments/input_file.h"
#include "daemon/base/dump_file.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
bool IsDumpName(std::string_view path)
{
    if (!path.starts_with(kDumpFilePrefix)) return false;
    path.remove_prefix(std::string_view(kDumpFilePrefix).size());
    return !path.empty() && path.size() <= kDumpFileDigits && path.find_first_not_of("0123456789") == path.npos;
}
}  // namespace

Failure TakeDumpFile(const Response& response, std::string* bytes)
{
    if (response.items.empty()) return {kSystemError, "the reply names no file"};
    const std::string path = response.items[0].text;
    if (!IsDumpName(path))
        return {kSystemError, "the reply names '" + path + "', which is no dump file; it was left alone"};
    const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "r");
    if (file == nullptr) return SystemFailure("cannot open the dump file " + path);
    struct stat status;
    Failure failure;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        failure = {kSystemError, path + " is not a plain file; it was left alone"};
    else if (unlink(path.c_str()) != 0)  // before it is read: reading may fail or be interrupted
        failure = SystemFailure("cannot remove the dump file " + path);
    else if (!ReadAll(file, bytes))
        failure = SystemFailure("cannot read the dump file " + path);
    fclose(file);
    return failure;
}
}  // namespace kobd::client
