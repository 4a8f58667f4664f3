// The part of the connections that serves whoever is ready.
#include <sys/epoll.h>

#include "web/server/connections.h"
#include "web/server/frame.h"
#include "web/server/problem.h"

namespace kobd::web
{
void Connections::Work(const Answerer& answer)
{
    for (epoll_event event = {};;)
    {
        if (epoll_wait(poll_, &event, 1, -1) != 1) continue;
        if (event.data.u64 == kStop) return;
        if (event.data.u64 == kDoor)
            Accept();
        else if (const Shared connection = Find(event.data.u64))
            Serve(connection, answer);
    }
}

void Connections::Serve(const Shared& connection, const Answerer& answer)
{
    const std::lock_guard lock(connection->mutex);
    if (connection->removed) return;
    connection->Receive();
    bool alive = connection->Flush();
    while (alive && connection->out.empty() && connection->phase == Phase::kRequests &&
           AnswerNext(&*connection, answer))
        alive = connection->Flush();
    if (alive && connection->last_answer && connection->out.empty() && connection->phase == Phase::kRequests)
        connection->SayFarewell();
    const bool finished = connection->ended && (connection->out.empty() || connection->phase != Phase::kRequests);
    if (!alive || finished) return Remove(&*connection);
    Arm(*connection);
}

// Puts the answer to the next whole request into `out`. False: there is none.
bool Connections::AnswerNext(Connection* connection, const Answerer& answer)
{
    if (connection->last_answer) return false;
    const Frame frame = FrameOf(connection->in);
    if (frame.refused != 0)
    {
        connection->out = RefusalOfFrame(frame.refused);
        connection->last_answer = true;
        return true;
    }
    if (frame.size == 0)
    {
        if (!frame.wants_continue || connection->told_to_continue) return false;
        connection->told_to_continue = true;
        connection->out = "HTTP/1.1 100 Continue\r\n\r\n";
        return true;
    }
    const After after = answer(connection->in.substr(0, frame.size), &connection->out);
    connection->in.erase(0, frame.size);
    connection->told_to_continue = false;
    connection->since = MonotonicSeconds();
    connection->last_answer = after == After::kClose;
    if (after == After::kListen) BeginListening(connection);
    return true;
}

// Waits for room to send while there is something to send, so that an answer is taken before the next request is read.
void Connections::Arm(const Connection& connection)
{
    const bool listening = connection.phase == Phase::kListening;
    const uint32_t reads = listening || connection.out.empty() ? EPOLLIN : 0U;
    const uint32_t writes = connection.out.empty() ? 0U : EPOLLOUT;
    const uint32_t end = connection.ended ? 0U : EPOLLRDHUP;
    Watch(EPOLL_CTL_MOD, connection.socket, reads | writes | end | EPOLLONESHOT, connection.number);
}
}  // namespace kobd::web
