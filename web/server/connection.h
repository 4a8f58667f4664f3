// One client's socket, with what has arrived and what has still to be sent. Nothing here waits.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

namespace kobd::web
{
enum class Phase
{
    kRequests,
    kListening,  // it gets events, and is ended when it sends anything more
    kFarewell,   // its last answer is on its way; what it still sends is thrown away
};

int64_t MonotonicSeconds();

// Everything but `number` is for the holder of `mutex`.
class Connection
{
public:
    Connection(uint64_t name, int descriptor) : number(name), socket(descriptor) {}
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Takes what has arrived. Notes in `ended` that the client has closed its side, that the
    // connection is broken, or that the client has sent what it may not.
    void Receive();

    // Sends what the socket takes. False: the connection is broken.
    bool Flush();

    // After the last answer: the client can read it, whatever it still has to send.
    void SayFarewell();

    bool IsOverdue(int64_t now) const;

    const uint64_t number;
    std::mutex mutex = {};
    const int socket;
    Phase phase = Phase::kRequests;
    std::string in = {};
    std::string out = {};
    bool last_answer = false;  // is in `out`
    bool ended = false;
    bool removed = false;
    bool told_to_continue = false;       // with the body of the request in `in`
    uint64_t missed = 0;                 // events that found the listener too far behind
    int64_t since = MonotonicSeconds();  // it waits for what it waits for

private:
    void Take(const char* bytes, size_t size);
    void Discard();
};
}  // namespace kobd::web
