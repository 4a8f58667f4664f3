// The options of a command line.
#pragma once

#include <optional>
#include <string>

namespace kobd::client
{
struct Options
{
    bool json = false;
    bool silent = false;
    bool follow = false;
    bool resume = false;
    bool help = false;
    bool version = false;
    std::string parent = {};             // path of the object under which a row is added
    int confirm_s = 0;                   // the old values return after so many seconds; 0: they do not
    std::optional<int> timeout_ms = {};  // how long an answer of the daemon may take, when it was given
    int count = 0;                       // messages or lines to wait for; 0: without end
};
}  // namespace kobd::client
