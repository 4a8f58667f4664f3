// Two queues and a process that bounces.
#include "bench/bare_bus.h"

#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "daemon/base/messages.h"
#include "platform/message.h"

namespace kobd::bench
{
namespace
{
struct BareMessage
{
    long type = 1;
    uint32_t reply_size = 0;
    int32_t reply_queue = -1;
    char rest[kMessageMax - sizeof(uint32_t) - sizeof(int32_t)] = {};
};

int MakeQueue()
{
    const int queue = msgget(IPC_PRIVATE, 0600);
    if (queue < 0) abort();
    return queue;
}

[[noreturn]] void Answer(int queue)
{
    static BareMessage message;
    while (msgrcv(queue, &message, kMessageMax, 0, 0) >= 0)
        if (msgsnd(message.reply_queue, &message, message.reply_size, 0) != 0) break;
    _exit(0);
}
}  // namespace

BareServer::BareServer() : queue_(MakeQueue()), process_(fork())
{
    if (process_ < 0) abort();
    if (process_ == 0) Answer(queue_);
}

BareServer::~BareServer()
{
    msgctl(queue_, IPC_RMID, nullptr);
    waitpid(process_, nullptr, 0);
}

BareClient::BareClient(const BareServer& server) : there_(server.Queue()), back_(MakeQueue()) {}

BareClient::~BareClient() { msgctl(back_, IPC_RMID, nullptr); }

void BareClient::Bounce(size_t request, size_t reply)
{
    static BareMessage message;
    message.reply_size = static_cast<uint32_t>(reply);
    message.reply_queue = back_;
    if (msgsnd(there_, &message, request, 0) != 0) abort();
    if (msgrcv(back_, &message, kMessageMax, 0, 0) != static_cast<ssize_t>(reply)) abort();
}
}  // namespace kobd::bench
