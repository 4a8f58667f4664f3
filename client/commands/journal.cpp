// kobctl journal [--follow]: what the imitated router noted of the things that a router would have done.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/state/daemon_state.h"
#include "client/traffic/listener.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 100000000;  // how late a new line may be printed

// The whole lines from `place` on, which moves behind the last of them; a line that is still being written waits for
// its end.
Words NewLines(const std::string& path, std::streamoff* place)
{
    Words lines;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (file.is_open() && file.tellg() < *place) *place = 0;  // emptied or replaced: begin again
    file.seekg(*place);
    for (std::string line; std::getline(file, line) && !file.eof();)
    {
        lines.push_back(line);
        *place = file.tellg();
    }
    return lines;
}

void PrintLines(const Options& options, const Words& lines)
{
    for (const std::string& line : lines) (void)Print(options, {{{"text", line}}, Shown(line) + "\n"});
    if (options.follow) fflush(stdout);  // its error is said at the end
}
}  // namespace

Outcome CommandJournal(const Options& options, const Words&)
{
    UseStateToShow();
    const std::string path = host::StateFolderName() + "/journal";
    if (!options.follow && access(path.c_str(), R_OK) != 0) return SystemFailure("cannot read " + path);
    StopAfter(options.timeout_ms);
    std::streamoff place = 0;
    const auto count = static_cast<size_t>(options.count);
    Words lines = NewLines(path, &place);
    if (count != 0 && !options.follow && lines.size() > count)
        lines.erase(lines.begin(), lines.end() - static_cast<Words::difference_type>(count));
    PrintLines(options, lines);
    size_t printed = 0;
    while (options.follow && !Stopped() && (count == 0 || printed < count))
    {
        const timespec pause = {0, kLookNs};
        nanosleep(&pause, nullptr);
        lines = NewLines(path, &place);
        if (count != 0) lines.resize(std::min(lines.size(), count - printed));
        PrintLines(options, lines);
        printed += lines.size();
    }
    return options.follow ? TooFew(options, "journal", static_cast<int>(printed)) : Failure();
}
}  // namespace kobd::client
