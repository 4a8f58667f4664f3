// Requests to the daemon and their decoded replies.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/bus_client.h"

namespace kobd::client
{
enum RequestId : uint16_t
{
    kRequestSet = 1,
    kRequestGet = 2,
    kRequestSetSilent = 3,
    kRequestUpdate = 4,
    kRequestShow = 13,
};

using Items = std::vector<std::pair<uint16_t, std::string>>;  // tag, text

struct Response
{
    int code = 0;            // result of the daemon, or of the bus when `from_bus`
    bool from_bus = false;   // no reply arrived
    bool too_large = false;  // the request does not fit one message; nothing was sent
    Items items = {};        // what follows the result
};

// Sends one request and waits for its reply.
Response Call(uint16_t id, const Items& items, int timeout_ms);
}  // namespace kobd::client
