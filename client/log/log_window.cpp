// Reads the end of the daemon's log.
#include "client/log/log_window.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "daemon/base/log.h"

namespace kobd::client
{
namespace
{
constexpr size_t kStamp = sizeof("2026/01/31  12:00:00 ") - 1;  // what stands before the function's name
constexpr off_t kMostBytes = 1024 * 1024;                       // a request writes far less

constexpr const char* kVerdictFunction = "ObjsParameterCheck";

// Splits "2026/01/31  12:00:00 function[12]: message" into its parts. False for a line of another form.
bool ParseLine(const std::string& text, LogLine* line)
{
    const size_t bracket = text.find('[');
    const size_t colon = text.find("]: ", bracket);
    if (text.size() < kStamp || text[4] != '/' || bracket == std::string::npos || bracket < kStamp ||
        colon == std::string::npos)
        return false;
    line->time = text.substr(0, kStamp - 1);
    line->function = text.substr(kStamp, bracket - kStamp);
    line->message = text.substr(colon + strlen("]: "));
    return true;
}

// The lines from `start` on, or the whole log when it is another file than `file` by now.
std::vector<LogLine> LinesFrom(ino_t file, off_t start)
{
    std::vector<LogLine> lines;
    struct stat status;
    std::ifstream log(kLogFile, std::ios::binary);
    if (!log || stat(kLogFile, &status) != 0) return lines;
    log.seekg(std::max(status.st_ino == file ? start : 0, status.st_size - kMostBytes));
    LogLine line;
    for (std::string text; std::getline(log, text);)
        if (ParseLine(text, &line)) lines.push_back(line);
    return lines;
}

// The line after the last one that says that `name` with `value` was refused; the first line when none does.
std::vector<LogLine>::const_iterator BehindVerdict(const std::vector<LogLine>& lines, const std::string& name,
                                                   const std::string& value)
{
    const std::string verdict = name + "(" + value + ") verify error";
    return std::find_if(lines.rbegin(), lines.rend(),
                        [&](const LogLine& line)
                        { return line.function == kVerdictFunction && line.message == verdict; })
        .base();
}

// What the check said just before the verdict; the empty text when it said nothing.
std::string CheckMessage(const std::vector<LogLine>& lines, std::vector<LogLine>::const_iterator behind_verdict)
{
    if (behind_verdict - lines.begin() < 2) return "";
    const LogLine& reason = *(behind_verdict - 2);
    const bool praise = reason.message.find("] is valid ") != std::string::npos;  // of a part that passed
    if (reason.function == kVerdictFunction || reason.message.empty() || praise) return "";
    return reason.message + " (" + reason.function + ")";
}
}  // namespace

LogWindow::LogWindow()
{
    struct stat status;
    if (stat(kLogFile, &status) != 0) return;
    file_ = status.st_ino;
    size_ = status.st_size;
}

std::vector<LogLine> LogWindow::Lines() const { return LinesFrom(file_, size_); }

std::vector<LogLine> LastLogLines() { return LinesFrom(0, 0); }

std::optional<std::string> RefusalIn(const std::vector<LogLine>& lines, const std::string& name,
                                     const std::string& value)
{
    const auto behind = BehindVerdict(lines, name, value);
    if (behind == lines.begin()) return std::nullopt;
    return CheckMessage(lines, behind);
}
}  // namespace kobd::client
