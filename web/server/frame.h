// Finds the end of a request in what has arrived of it, so that a worker only begins with whole requests.
#pragma once

#include <cstddef>
#include <string_view>

namespace kobd::web
{
struct Frame
{
    size_t size = 0;              // bytes of the whole request; 0: more has to arrive
    int refused = 0;              // HTTP status of a request that is not taken
    bool wants_continue = false;  // the client waits for a word before it sends the body
};

Frame FrameOf(std::string_view arrived);
}  // namespace kobd::web
