// What the daemon writes to its log while a request runs.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace kobd::client
{
struct LogLine
{
    std::string time;  // "2026/01/31  12:00:00"
    std::string function;
    std::string message;  // without line ends at its end
};

// The end of the log from the moment at which this object was made: make one before a request. Lines of other clients'
// requests may be among them. There are none when this user may not read the log.
class LogWindow
{
public:
    LogWindow();
    std::vector<LogLine> Lines() const;

private:
    ino_t file_ = 0;  // another one after a rotation, which is then read from its start
    off_t size_ = 0;
};

// The last lines of the log, of at most 1 MB; empty when it cannot be read.
std::vector<LogLine> LastLogLines();

// What the check said when it refused `name` with `value`: "MESSAGE (CHECK)", or the empty text where the lines do not
// have its message. Nothing when no line says that the value was refused.
std::optional<std::string> RefusalIn(const std::vector<LogLine>& lines, const std::string& name,
                                     const std::string& value);
}  // namespace kobd::client
