// The feed's thread and its descriptor, an eventfd that is not zero while a message is waiting.
#include "client/library/feed.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
int64_t NowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

void SetReadable(int descriptor) { (void)!eventfd_write(descriptor, 1); }

std::unique_ptr<Taken> Nothing(int code)
{
    auto nothing = std::make_unique<Taken>();
    nothing->code = code;
    return nothing;
}
}  // namespace

// The thread takes no signals: those belong to the program.
Feed* Feed::Start(Take take)
{
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) return nullptr;
    auto* feed = new Feed(std::move(take), descriptor);
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const int error = pthread_create(&feed->thread_, nullptr, Run, feed);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (error == 0) return feed;
    delete feed;
    close(descriptor);
    errno = error;
    return nullptr;
}

void Feed::Close(Feed* feed)
{
    if (feed == nullptr) return;
    const int descriptor = feed->descriptor_;
    if (feed->process_ == getpid())
    {
        feed->Join();
        delete feed;
    }
    close(descriptor);
}

void Feed::Join()
{
    pthread_mutex_lock(&lock_);
    closing_ = true;
    pthread_cond_signal(&room_);
    pthread_mutex_unlock(&lock_);
    pthread_join(thread_, nullptr);
}

void* Feed::Run(void* self)
{
    auto* feed = static_cast<Feed*>(self);
    while (feed->WaitForRoom())
    {
        auto taken = std::make_unique<Taken>();
        feed->take_(taken.get());
        const int code = taken->code;
        if (code != kReplyTimeout) feed->Deliver(std::move(taken));
        if (code != kReplyTimeout && code != kSuccess) break;
    }
    return nullptr;
}

// False when the feed is being closed.
bool Feed::WaitForRoom()
{
    pthread_mutex_lock(&lock_);
    while (waiting_.size() >= kFeedMost && !closing_) pthread_cond_wait(&room_, &lock_);
    pthread_mutex_unlock(&lock_);
    return !closing_;
}

void Feed::Deliver(std::unique_ptr<Taken> taken)
{
    pthread_mutex_lock(&lock_);
    waiting_.push_back(std::move(taken));
    SetReadable(descriptor_);
    pthread_mutex_unlock(&lock_);
}

// nullptr when nothing is waiting; the descriptor is not readable then.
std::unique_ptr<Taken> Feed::TakeFirst()
{
    std::unique_ptr<Taken> first;
    pthread_mutex_lock(&lock_);
    if (!waiting_.empty() && waiting_.front()->code != kSuccess)
        first = Nothing(waiting_.front()->code);  // it stays, for the next call
    else if (!waiting_.empty())
    {
        first = std::move(waiting_.front());
        waiting_.pop_front();
        pthread_cond_signal(&room_);
    }
    eventfd_t count = 0;
    if (waiting_.empty()) (void)!eventfd_read(descriptor_, &count);
    if (stopped_) SetReadable(descriptor_);
    pthread_mutex_unlock(&lock_);
    return first;
}

std::unique_ptr<Taken> Feed::Next(int milliseconds)
{
    if (process_ != getpid()) return Nothing(kInitializeFailed);
    const int64_t deadline = NowMs() + milliseconds;
    for (;;)
    {
        if (stopped_) return Nothing(kNotRunning);
        if (auto first = TakeFirst()) return first;
        const int64_t left = milliseconds < 0 ? -1 : deadline - NowMs();
        if (milliseconds >= 0 && left <= 0) return Nothing(kReplyTimeout);
        pollfd readable = {descriptor_, POLLIN, 0};
        poll(&readable, 1, static_cast<int>(left));
    }
}

void Feed::Stop()
{
    stopped_ = true;
    SetReadable(descriptor_);
}
}  // namespace kobd::client
