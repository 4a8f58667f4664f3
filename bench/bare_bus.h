// The limit: messages bounced between two processes over bare System V queues, without a header, a
// handler or a library in between.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace kobd::bench
{
// A process of its own that answers each message with one of the size it asks for.
class BareServer
{
public:
    BareServer();  // aborts when there are no queues
    ~BareServer();
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    int Queue() const { return queue_; }

private:
    int queue_;
    pid_t process_;
};

// One who asks it, with a queue of its own for the answers.
class BareClient
{
public:
    explicit BareClient(const BareServer& server);  // aborts when there are no queues
    ~BareClient();
    BareClient(const BareClient&) = delete;
    BareClient& operator=(const BareClient&) = delete;

    // Sends `request` bytes and waits for `reply` bytes; both between 8 and 8192.
    void Bounce(size_t request, size_t reply);

private:
    int there_;
    int back_;
};
}  // namespace kobd::bench
