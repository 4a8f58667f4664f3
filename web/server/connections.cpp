#include "web/server/connections.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>

#include "web/server/limits.h"

namespace kobd::web
{
namespace
{
// The descriptors that the system gives us, up to those that the most connections need. Leaves some for everything
// else.
size_t ConnectionsAllowed()
{
    constexpr rlim_t kOthers = 64;
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = std::max(files.rlim_cur, std::min<rlim_t>(files.rlim_max, kConnectionsMost + kOthers));
    setrlimit(RLIMIT_NOFILE, &files);
    return std::min<rlim_t>(kConnectionsMost, files.rlim_cur - std::min(files.rlim_cur, kOthers));
}
}  // namespace

bool Connections::Watch(int how, int descriptor, uint32_t events, uint64_t number)
{
    epoll_event event = {events, {}};
    event.data.u64 = number;
    return epoll_ctl(poll_, how, descriptor, &event) == 0;
}

Connections::~Connections()
{
    for (const int descriptor : {poll_, door_, stop_})
        if (descriptor >= 0) close(descriptor);
}

int Connections::Open(int port)
{
    most_ = ConnectionsAllowed();
    poll_ = epoll_create1(EPOLL_CLOEXEC);
    stop_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    door_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    socklen_t size = sizeof address;
    if (poll_ < 0 || stop_ < 0 || door_ < 0 || setsockopt(door_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(door_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(door_, SOMAXCONN) != 0 ||
        getsockname(door_, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        !Watch(EPOLL_CTL_ADD, stop_, EPOLLIN, kStop) || !Watch(EPOLL_CTL_ADD, door_, EPOLLIN | EPOLLONESHOT, kDoor))
        return 0;
    return ntohs(address.sin_port);
}

void Connections::Stop()
{
    const uint64_t one = 1;
    (void)!write(stop_, &one, sizeof one);  // fails only when it is readable already
}

void Connections::Accept()
{
    for (int socket; (socket = accept4(door_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)) >= 0;)
    {
        Add(socket);
        MakeRoom();
    }
    if (errno == EMFILE || errno == ENFILE) usleep(10'000);  // the next one waits until somebody leaves
    Watch(EPOLL_CTL_MOD, door_, EPOLLIN | EPOLLONESHOT, kDoor);
}

void Connections::Add(int socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const std::lock_guard lock(mutex_);
    const auto connection = std::make_shared<Connection>(next_number_++, socket);
    connections_.emplace(connection->number, connection);
    Watch(EPOLL_CTL_ADD, socket, EPOLLIN | EPOLLRDHUP | EPOLLONESHOT, connection->number);
}

// Beyond the most connections, the one that has kept us waiting longest makes room for the new one.
void Connections::MakeRoom()
{
    const std::vector<Shared> all = AllOf(connections_);
    if (all.size() <= most_) return;
    std::unique_lock<std::mutex> held;
    Connection* oldest = nullptr;
    for (const Shared& one : all)
    {
        std::unique_lock lock(one->mutex, std::try_to_lock);
        if (!lock || one->phase == Phase::kListening || (oldest != nullptr && one->since >= oldest->since)) continue;
        oldest = one.get();
        held = std::move(lock);
    }
    if (oldest != nullptr) Remove(oldest);
}

Connections::Shared Connections::Find(uint64_t number)
{
    const std::lock_guard lock(mutex_);
    const auto found = connections_.find(number);
    return found != connections_.end() ? found->second : nullptr;
}

std::vector<Connections::Shared> Connections::AllOf(const std::map<uint64_t, Shared>& connections)
{
    const std::lock_guard lock(mutex_);
    std::vector<Shared> all;
    all.reserve(connections.size());
    for (const auto& [number, connection] : connections) all.push_back(connection);
    return all;
}

void Connections::Remove(Connection* connection)
{
    if (connection->removed) return;
    connection->removed = true;
    if (connection->phase == Phase::kListening) --listeners_;
    Watch(EPOLL_CTL_DEL, connection->socket, 0, 0);
    const std::lock_guard lock(mutex_);
    listening_.erase(connection->number);
    connections_.erase(connection->number);
}

void Connections::Sweep()
{
    const int64_t now = MonotonicSeconds();
    for (const Shared& connection : AllOf(connections_))
    {
        const std::unique_lock lock(connection->mutex, std::try_to_lock);
        if (lock && connection->IsOverdue(now)) Remove(&*connection);
    }
    if (now % kPulseTime == 0) Broadcast(":\n\n");
}
}  // namespace kobd::web
