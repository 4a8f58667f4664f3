// A client that keeps its connection and asks again and again, as a web server or an agent does.
#pragma once

#include <string>

#include "daemon/base/messages.h"
#include "platform/bus_client.h"

namespace kobd::bench
{
class Connection
{
public:
    Connection();  // aborts without a bus
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // One request of these items, bytes of the whole reply. Aborts unless the result is 0: what
    // fails is fast, and no measurement.
    size_t Ask(uint16_t id, const std::string& items);

    // The items of the last reply behind its result.
    std::string Items() const;

private:
    BusClient bus_;
    alignas(MessageHeader) char request_[kMessageMax] = {};
    alignas(MessageHeader) char reply_[kMessageMax] = {};
};
}  // namespace kobd::bench
