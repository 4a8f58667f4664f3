// A thread that takes messages as they come, and a descriptor that is readable while one is waiting: for programs that
// wait with poll(2). A watch or a tap without a descriptor has none of this.
#pragma once

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>

#include "client/library/connection.h"

namespace kobd::client
{
inline constexpr size_t kFeedMost = 64;  // messages that wait in a feed; further ones stay where they come from

struct Taken
{
    int code = 0;  // not 0: the source has ended, and there is no message
    Message message = {};
    BusTapped tapped = {};
    uint32_t missed = 0;
};

class Feed
{
public:
    // Takes the next message, waiting for a short time. The code 8: none came.
    using Take = std::function<void(Taken*)>;

    // nullptr with errno when the system gives no descriptor or no thread. Close it with Close.
    static Feed* Start(Take take);
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    // Ends the thread and frees the feed, which may be nullptr. In a child of the process that started it, whose copy
    // may be half-changed, only the descriptor is closed.
    static void Close(Feed* feed);

    int Descriptor() const { return descriptor_; }

    // Waits for a message, at most `milliseconds`, less than 0 without end. The code is 8 when none came, 3 after Stop,
    // and 9 in a child of the process that started it. Where the source has ended, its code comes each time.
    std::unique_ptr<Taken> Next(int milliseconds);

    // From now on Next returns at once, and the descriptor is readable. May be called from a signal handler.
    void Stop();

private:
    Feed(Take take, int descriptor) : take_(std::move(take)), process_(getpid()), descriptor_(descriptor) {}
    ~Feed() = default;
    static void* Run(void* self);
    void Join();
    bool WaitForRoom();
    void Deliver(std::unique_ptr<Taken> taken);
    std::unique_ptr<Taken> TakeFirst();

    const Take take_;
    std::deque<std::unique_ptr<Taken>> waiting_ = {};  // under the lock
    pthread_mutex_t lock_ = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t room_ = PTHREAD_COND_INITIALIZER;
    pthread_t thread_ = {};
    const int process_;  // whose thread it is
    const int descriptor_;
    std::atomic<bool> closing_ = false;
    std::atomic<bool> stopped_ = false;
};
}  // namespace kobd::client
