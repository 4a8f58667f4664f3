// All clients: accepts them, hands whole requests to workers, sends events to listeners, ends those that take too
// long. Workers wait together for whichever socket is ready, and never for one of them, so that a slow or dead client
// holds up nobody.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "web/server/connection.h"

namespace kobd::web
{
enum class After
{
    kKeep,    // the connection, for more requests
    kClose,   // it when the answer is sent
    kListen,  // the client gets events from now on
};

// Makes the answer to a whole request.
using Answerer = std::function<After(const std::string& request, std::string* answer)>;

class Connections
{
public:
    Connections() = default;
    ~Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    // Listens on the loopback address; port 0 takes any. Returns the port, or 0 with errno.
    int Open(int port);

    // Serves whoever is ready, until Stop. For any number of threads.
    void Work(const Answerer& answer);
    void Stop();

    // To be called once a second: ends overdue connections and keeps listeners alive.
    void Sweep();

    // Takes one of the places of listeners for the request in hand. False: all are taken.
    bool ReserveListener();
    size_t Listeners() const { return listeners_; }

    // Sends an event to all listeners. One that is too far behind misses it and is told later how many it has missed.
    void Broadcast(const std::string& event);

    // What each new listener is sent first.
    void SetGreeting(const std::string& event);

private:
    using Shared = std::shared_ptr<Connection>;

    void Accept();
    void Add(int socket);
    void MakeRoom();
    Shared Find(uint64_t number);
    std::vector<Shared> AllOf(const std::map<uint64_t, Shared>& connections);
    void Serve(const Shared& connection, const Answerer& answer);
    bool AnswerNext(Connection* connection, const Answerer& answer);
    void BeginListening(Connection* connection);
    void SendEvent(Connection* connection, const std::string& event);
    void Remove(Connection* connection);
    void Arm(const Connection& connection);
    bool Watch(int how, int descriptor, uint32_t events, uint64_t number);

    static constexpr uint64_t kDoor = 0;  // numbers that no connection has
    static constexpr uint64_t kStop = 1;

    size_t most_ = 0;  // connections
    int poll_ = -1;
    int door_ = -1;  // the listening socket
    int stop_ = -1;  // an eventfd, readable from Stop on
    std::atomic<size_t> listeners_ = 0;
    std::mutex mutex_ = {};  // for the members below; taken while a connection's own is held, never before it
    std::map<uint64_t, Shared> connections_ = {};  // the one that came first is first
    std::map<uint64_t, Shared> listening_ = {};    // those of them that get events
    uint64_t next_number_ = kStop + 1;
    std::string greeting_ = {};
};
}  // namespace kobd::web
