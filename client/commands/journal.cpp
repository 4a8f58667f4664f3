// kobctl journal [--follow]: what the imitated router noted of the things that a router would have done.
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <fstream>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/state/daemon_state.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr long kLookNs = 100000000;  // how late a new line may be printed

// Prints the whole lines from `place` on and moves it behind the last of them; a line that is still being written waits
// for its end. `printed` counts towards --count.
void PrintLines(const Options& options, const std::string& path, std::streamoff* place, int* printed)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (file.is_open() && file.tellg() < *place) *place = 0;  // emptied or replaced: begin again
    file.seekg(*place);
    for (std::string line; std::getline(file, line) && !file.eof();)
    {
        (void)Print(options, {{{"text", line}}, Shown(line) + "\n"});
        *place = file.tellg();
        if (++*printed == options.count) break;
    }
    if (options.follow) fflush(stdout);  // its error is said at the end
}
}  // namespace

Outcome CommandJournal(const Options& options, const Words&)
{
    UseStateToShow();
    const std::string path = host::StateFolderName() + "/journal";
    if (!options.follow && access(path.c_str(), R_OK) != 0) return SystemFailure("cannot read " + path);
    CatchInterrupts();
    std::streamoff place = 0;
    int printed = 0;
    PrintLines(options, path, &place, &printed);
    while (options.follow && !Interrupted() && !OutputClosed() && (options.count == 0 || printed < options.count))
    {
        const timespec pause = {0, kLookNs};
        nanosleep(&pause, nullptr);
        PrintLines(options, path, &place, &printed);
    }
    return {};
}
}  // namespace kobd::client
