#include "web/server/connection.h"

#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <ctime>

#include "web/server/limits.h"

namespace kobd::web
{
int64_t MonotonicSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec;
}

Connection::~Connection() { close(socket); }

void Connection::Take(const char* bytes, size_t size)
{
    if (in.empty()) since = MonotonicSeconds();
    in.append(bytes, size);
}

// One read a call: a client that never stops sending must not keep the thread, nor outlive its farewell.
void Connection::Discard()
{
    char bytes[16 * 1024];
    const ssize_t size = recv(socket, bytes, sizeof bytes, MSG_DONTWAIT);
    const bool closed = size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR);
    const bool enough = phase == Phase::kListening ? size > 0 : IsOverdue(MonotonicSeconds());
    ended = ended || closed || enough;
}

void Connection::Receive()
{
    if (phase != Phase::kRequests) return Discard();
    char bytes[16 * 1024];
    while (in.size() < kHeadMost + kBodyMost)
    {
        const ssize_t size = recv(socket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (size < 0 && errno == EINTR) continue;
        if (size == 0 || (size < 0 && errno != EAGAIN)) ended = true;
        if (size > 0) Take(bytes, static_cast<size_t>(size));
        if (size < static_cast<ssize_t>(sizeof bytes)) return;
    }
}

bool Connection::Flush()
{
    size_t sent = 0;
    bool whole = true;
    while (sent < out.size())
    {
        const ssize_t size = send(socket, out.data() + sent, out.size() - sent, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (size < 0 && errno == EINTR) continue;
        whole = size >= 0 || errno == EAGAIN;
        if (size < 0) break;
        sent += static_cast<size_t>(size);
    }
    if (sent > 0) since = MonotonicSeconds();
    out.erase(0, sent);
    return whole;
}

void Connection::SayFarewell()
{
    shutdown(socket, SHUT_WR);
    phase = Phase::kFarewell;
    in.clear();
    since = MonotonicSeconds();
}

bool Connection::IsOverdue(int64_t now) const
{
    if (phase == Phase::kFarewell) return now - since > kFarewellTime;
    if (!out.empty()) return now - since > kAnswerTime;
    if (phase == Phase::kListening) return false;
    return now - since > (in.empty() ? kIdleTime : kRequestTime);
}
}  // namespace kobd::web
