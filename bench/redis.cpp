#include "bench/redis.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kobd::bench
{
namespace
{
// The socket that a server listens on by now. -1 after three seconds without one, or when the server has ended.
int Connect(const std::string& path, pid_t server)
{
    sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
    snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
    for (int look = 0; look < 300 && waitpid(server, nullptr, WNOHANG) == 0; ++look)
    {
        const int file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return file;
        close(file);
        usleep(10000);
    }
    return -1;
}
}  // namespace

Redis::Redis(const std::string& folder)
{
    const std::string path = "/tmp/redis.socket";  // short enough for an address, in the namespace of the measurement
    process_ = fork();
    if (process_ == 0)
    {
        if (freopen("/dev/null", "w", stdout) == nullptr) _exit(127);
        execlp("redis-server", "redis-server", "--port", "0", "--unixsocket", path.c_str(), "--dir", folder.c_str(),
               "--appendonly", "yes", "--appendfsync", "always", "--save", "", nullptr);
        _exit(127);
    }
    socket_ = Connect(path, process_);
}

Redis::~Redis()
{
    if (!Runs()) return;
    close(socket_);
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

void Redis::Set(const std::string& value)
{
    const std::string request = "SET webHttpPort " + value + "\r\n";
    char answer[16] = {};
    if (write(socket_, request.data(), request.size()) != static_cast<ssize_t>(request.size())) abort();
    if (read(socket_, answer, sizeof answer - 1) <= 0 || strcmp(answer, "+OK\r\n") != 0) abort();
}
}  // namespace kobd::bench
