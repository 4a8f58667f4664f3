// What the receive thread tells the sending part of the bus library.
#pragma once

namespace kobd::host
{
// While it lives, all sends of this thread are of one request, and share one bound on waiting.
class HandlingRequest
{
public:
    explicit HandlingRequest(int own_queue);  // where the request came from
    ~HandlingRequest();
    HandlingRequest(const HandlingRequest&) = delete;
    HandlingRequest& operator=(const HandlingRequest&) = delete;
};
}  // namespace kobd::host
