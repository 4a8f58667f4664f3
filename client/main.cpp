// kobctl: reads and changes the router's objects and tables from a terminal.
#include <cmath>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "client/commands.h"

namespace
{
using namespace kobd::client;

struct Command
{
    const char* name;
    size_t least_words;
    size_t most_words;
    int (*run)(const Options&, const Words&);
};

constexpr Command kCommands[] = {
    {"get", 1, SIZE_MAX, CommandGet},
    {"set", 1, SIZE_MAX, CommandSet},
    {"list", 0, 1, CommandList},
    {"describe", 1, SIZE_MAX, CommandDescribe},
    {"show", 0, 0, CommandShow},
    {"commit", 0, 0, CommandCommit},
    {"watch", 0, 0, CommandWatch},
    {"event", 1, 2, CommandEvent},
    {"journal", 0, 0, CommandJournal},
    {"nvram", 0, SIZE_MAX, CommandNvram},
    {"config", 0, SIZE_MAX, CommandConfig},
    {"table", 0, SIZE_MAX, CommandTable},
    {"complete-names", 0, 2, CommandCompleteNames},
};

constexpr char kHelp[] =
    "kobctl: reads and changes the router's objects and tables\n"
    "\n"
    "  get NAME...              current values\n"
    "  set NAME=VALUE...        new values, checked together, applied in order, made durable\n"
    "      --silent             no announcement and not made durable\n"
    "  commit                   make durable what was set silently\n"
    "  list [PATTERN]           names that match ('wifi*'; a plain word matches anywhere)\n"
    "  describe NAME...         type, what it accepts, access, check\n"
    "  show                     all names, as the daemon lists them\n"
    "  watch [--count N]        announcements and events to the other modules as they arrive\n"
    "\n"
    "  event NAME [TEXT]        a network event to the daemon, 'event ApnIPChange 2'\n"
    "  journal [--follow]       what a router would have done, line by line; --count N with --follow\n"
    "  nvram get KEY...         values of the non-volatile store, also without the daemon\n"
    "  nvram set KEY=VALUE...   new values, durable at once\n"
    "  config get, config set   the same for the configuration store\n"
    "\n"
    "  table list [PATTERN]     tables, the most rows each may hold, its operations\n"
    "  table describe TABLE...  rows, operations, what each column takes\n"
    "  table columns TABLE      columns with type and size\n"
    "  table max TABLE          the most rows, as the daemon says\n"
    "  table dump TABLE...      all rows\n"
    "  table get TABLE INDEX... these rows\n"
    "  table set TABLE INDEX COLUMN=VALUE... [TABLE INDEX COLUMN=VALUE...]\n"
    "                           changes rows, all checked before the first is written\n"
    "      --silent             no announcement and not made durable\n"
    "  table add TABLE [COLUMN=VALUE...]\n"
    "                           a new row, filled; prints its index\n"
    "      --parent PATH        below this object\n"
    "  table del TABLE INDEX... deletes rows\n"
    "\n"
    "  --json                   print data as JSON\n"
    "  --timeout SECONDS        how long to wait for an answer (default 5)\n"
    "\n"
    "  kobctl get webHttpPort IMEI\n"
    "  kobctl set webHttpEnable=1 webHttpPort=8080\n"
    "  kobctl table add FwUrlFilterTable URL=example.com\n"
    "\n"
    "Exit status: 0 success, 1 refused or failed, 2 wrong use.\n";

int Usage(const std::string& what)
{
    fprintf(stderr, "kobctl: %s; see kobctl help\n", what.c_str());
    return 2;
}

bool ReadSeconds(const std::string& text, int* milliseconds)
{
    char* end = nullptr;
    const double seconds = strtod(text.c_str(), &end);
    if (text.empty() || *end != 0 || !std::isfinite(seconds) || seconds < 0 || seconds > 86400) return false;
    *milliseconds = static_cast<int>(seconds * 1000);
    return true;
}

bool ReadCount(const std::string& text, int* count)
{
    char* end = nullptr;
    const long number = strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != 0 || number < 1 || number > 1000000) return false;
    *count = static_cast<int>(number);
    return true;
}

// Splits options from words. The error, or the empty text.
std::string Parse(const Words& arguments, Options* options, Words* words)
{
    for (size_t i = 0; i < arguments.size(); ++i)
    {
        const std::string& word = arguments[i];
        const std::string next = i + 1 < arguments.size() ? arguments[i + 1] : "";
        if (word == "--")
        {
            words->insert(words->end(), arguments.begin() + static_cast<ptrdiff_t>(i) + 1, arguments.end());
            return "";
        }
        if (word == "--json")
            options->json = true;
        else if (word == "--silent")
            options->silent = true;
        else if (word == "--follow")
            options->follow = true;
        else if (word == "--parent" && !next.empty())
            options->parent = arguments[++i];
        else if (word == "--parent")
            return "--parent takes the path of an object";
        else if (word == "--timeout" && ReadSeconds(next, &options->timeout_ms))
            ++i;
        else if (word == "--timeout")
            return "--timeout takes seconds, not '" + next + "'";
        else if (word == "--count" && ReadCount(next, &options->count))
            ++i;
        else if (word == "--count")
            return "--count takes a number, not '" + next + "'";
        else if (word.starts_with("--") && word != "--help" && word != "--version")
            return "unknown option " + word;
        else
            words->push_back(word);
    }
    return "";
}
}  // namespace

int main(int count, char** arguments)
{
    signal(SIGPIPE, SIG_DFL);
    Options options;
    Words words;
    const std::string error = Parse(Words(arguments + 1, arguments + count), &options, &words);
    if (!error.empty()) return Usage(error);
    if (words.empty()) return Usage("no command given");
    const std::string name = words.front();
    words.erase(words.begin());
    if (name == "help" || name == "--help") return fputs(kHelp, stdout) < 0 ? 1 : 0;
    if (name == "--version") return printf("kobctl %s\n", KOBD_VERSION) < 0 ? 1 : 0;
    for (const Command& command : kCommands)
    {
        if (name != command.name) continue;
        if (words.size() < command.least_words) return Usage(name + " needs a name");
        if (words.size() > command.most_words) return Usage(name + " takes no '" + words.back() + "'");
        const int status = command.run(options, words);
        return fflush(stdout) != 0 && status == 0 ? 1 : status;
    }
    return Usage("unknown command '" + name + "'");
}
