// One datagram to the service manager's socket.
#include "host/service_manager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace kobd::host
{
void TellServiceManager(const char* state)
{
    sockaddr_un address = {};
    const char* path = getenv("NOTIFY_SOCKET");
    const size_t length = path == nullptr ? 0 : strlen(path);
    if (length == 0 || length >= sizeof address.sun_path) return;
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, path, length);
    if (*path == '@') address.sun_path[0] = 0;  // a name that is in no file system
    const int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (sender < 0) return;
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    (void)!sendto(sender, state, strlen(state), MSG_DONTWAIT | MSG_NOSIGNAL, reinterpret_cast<sockaddr*>(&address),
                  size);
    close(sender);
}
}  // namespace kobd::host
