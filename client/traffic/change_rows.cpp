// Reads the change file of a table set in passing.
#include "client/traffic/change_rows.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "daemon/base/messages.h"

namespace kobd::client
{
namespace
{
constexpr off_t kMostBytes = 256 * 1024;  // more rows than a person reads in one line

// Any client chooses the path, so that it may name a link, a device or a pipe.
std::optional<std::string> ReadRegular(const char* path)
{
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) return std::nullopt;
    struct stat status = {};
    std::optional<std::string> bytes;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= kMostBytes)
    {
        bytes.emplace(static_cast<size_t>(status.st_size), '\0');
        const ssize_t count = read(file, bytes->data(), bytes->size());
        if (count != status.st_size) bytes.reset();
    }
    close(file);
    return bytes;
}
}  // namespace

bool IsTableSet(const kobd_tapped& message)
{
    return message.kind == KOBD_TAP_RECEIVED && message.message_class == kClassRequest &&
           (message.id == kReqTableSet || message.id == kReqTableSetSilent);
}

std::optional<std::string> ReadChangeFile(const kobd_tapped& table_set)
{
    kobd_bytes payload = table_set.payload;
    kobd_item path{};
    if (kobd_bytes_next(&payload, &path) != 1 || path.text == nullptr) return std::nullopt;
    return ReadRegular(path.text);
}
}  // namespace kobd::client
