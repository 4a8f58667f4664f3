// The part of the connections that sends events.
#include <sys/socket.h>

#include "web/server/connections.h"
#include "web/server/limits.h"

namespace kobd::web
{
bool Connections::ReserveListener()
{
    if (listeners_++ < kListenersMost) return true;
    --listeners_;
    return false;
}

void Connections::SetGreeting(const std::string& event)
{
    const std::lock_guard lock(mutex_);
    greeting_ = event;
}

void Connections::BeginListening(Connection* connection)
{
    const int size = kLagMost / 4;  // what waits in the kernel is lag, too
    setsockopt(connection->socket, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    connection->phase = Phase::kListening;
    connection->in.clear();
    const std::lock_guard lock(mutex_);
    listening_.emplace(connection->number, connections_.at(connection->number));
    connection->out =
        "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-store\r\nConnection: close\r\n\r\n" +
        greeting_;
}

void Connections::Broadcast(const std::string& event)
{
    if (listeners_ == 0) return;
    for (const Shared& connection : AllOf(listening_))
    {
        const std::lock_guard lock(connection->mutex);
        if (!connection->removed) SendEvent(&*connection, event);
    }
}

void Connections::SendEvent(Connection* connection, const std::string& event)
{
    if (connection->out.size() + event.size() > kLagMost)
    {
        ++connection->missed;
        return;
    }
    const bool waits = !connection->out.empty();  // for room, and a worker will send the rest
    if (!waits) connection->since = MonotonicSeconds();
    if (connection->missed > 0)
        connection->out += "event: missed\ndata: {\"count\":" + std::to_string(connection->missed) + "}\n\n";
    connection->missed = 0;
    connection->out += event;
    if (waits) return;
    if (!connection->Flush()) return Remove(connection);
    if (!connection->out.empty()) Arm(*connection);
}
}  // namespace kobd::web
