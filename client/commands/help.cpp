// kobctl help [COMMAND]: one screen of 24 lines and 80 columns each.
#include <cstdio>
#include <cstring>
#include <string>

#include "client/commands/commands.h"
#include "client/dictionary/nearest.h"

namespace kobd::client
{
namespace
{
constexpr char kOverview[] =
    "kobctl: reads and changes the router's objects and tables\n"
    "\n"
    "Values  get NAME...            current values\n"
    "        set NAME=VALUE...      new values, checked together, made durable\n"
    "        check NAME=VALUE...    would set accept them? changes nothing\n"
    "        confirm                keep what set --confirm SECONDS changed\n"
    "        commit                 make durable what was set silently\n"
    "Tables  table COMMAND ...      list describe columns max dump get set add del\n"
    "Names   list [PATTERN]         names that match\n"
    "        describe NAME...       type, access, what it takes, its check\n"
    "        show                   all names, as the daemon lists them\n"
    "Files   export [FILE]          all settable values and rows, one readable file\n"
    "        import FILE            sets them again, all checked first\n"
    "        batch FILE             a command a line, stops at the first failure\n"
    "Events  watch [PATTERN...]     announcements as they arrive\n"
    "        event NAME [TEXT]      a network event to the daemon\n"
    "        journal [--follow]     what a router would have done\n"
    "Stores  nvram, config          get KEY... or set KEY=VALUE...\n"
    "State   doctor                 what is wrong, and what to do\n"
    "\n"
    "help COMMAND has examples. With every command: --timeout SECONDS (5), and --json\n"
    "but for export.\n"
    "Exit status: 0 success, 1 refused or failed, 2 wrong use, 3 check left open.\n";

struct Help
{
    const char* command;
    const char* text;
};

#define HELP(command, text) {command, text},
constexpr Help kHelp[] = {
#include "client/commands/help.def"
};
#undef HELP
}  // namespace

int CommandHelp(const Options& options, const Words& command)
{
    if (command.empty() || command[0] == "help") return fputs(kOverview, stdout) < 0 ? 1 : 0;
    std::vector<const char*> commands;
    for (const Help& help : kHelp)
    {
        if (command[0] == help.command) return fputs(help.text, stdout) < 0 ? 1 : 0;
        commands.push_back(help.command);
    }
    return WrongUse(options, "there is no command " + command[0] + DidYouMean(NearestOf(command[0], commands)));
}
}  // namespace kobd::client
