// The commands of kobctl with the words and options each takes.
#include "client/run_command.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "client/command_line.h"
#include "client/nearest.h"

namespace kobd::client
{
namespace
{
struct Command
{
    const char* name;
    size_t least_words;
    size_t most_words;
    const char* options;  // of its own, beside --json and --timeout
    int (*run)(const Options&, const Words&);
};

constexpr Command kCommands[] = {
    {"get", 1, SIZE_MAX, "", CommandGet},
    {"set", 1, SIZE_MAX, "--silent --confirm", CommandSet},
    {"check", 1, SIZE_MAX, "", CommandCheck},
    {"confirm", 0, 0, "--resume", CommandConfirm},
    {"commit", 0, 0, "", CommandCommit},
    {"table", 0, SIZE_MAX, "--silent --parent", CommandTable},
    {"list", 0, 1, "", CommandList},
    {"describe", 1, SIZE_MAX, "", CommandDescribe},
    {"show", 0, 0, "", CommandShow},
    {"export", 0, 1, "", CommandExport},
    {"import", 1, 1, "", CommandImport},
    {"batch", 1, 1, "", CommandBatch},
    {"watch", 0, SIZE_MAX, "--count", CommandWatch},
    {"event", 1, 2, "", CommandEvent},
    {"journal", 0, 0, "--follow --count", CommandJournal},
    {"nvram", 0, SIZE_MAX, "", CommandNvram},
    {"config", 0, SIZE_MAX, "", CommandConfig},
    {"doctor", 0, 0, "", CommandDoctor},
    {"help", 0, 1, "", CommandHelp},
    {"complete-names", 0, 2, "", CommandCompleteNames},
};

int WrongUse(const std::string& what)
{
    fprintf(stderr, "kobctl: %s; see kobctl help\n", what.c_str());
    return 2;
}

int WrongUseOf(const Command& command, const std::string& what)
{
    fprintf(stderr, "kobctl: %s; see kobctl help %s\n", what.c_str(), command.name);
    return 2;
}

std::string NearestCommand(const std::string& name)
{
    std::vector<const char*> names;
    for (const Command& command : kCommands) names.push_back(command.name);
    return NearestOf(name, names);
}

bool Takes(const Command& command, const std::string& option)
{
    Words taken;
    return SplitLine(command.options, &taken).empty() && std::find(taken.begin(), taken.end(), option) != taken.end();
}

int Run(const Command& command, const Options& options, const Words& words, const Words& given)
{
    const std::string name = command.name;
    for (const std::string& option : given)
        if (!Takes(command, option)) return WrongUseOf(command, name + " takes no " + option);
    if (words.size() == 1 && words[0] == "--help") return CommandHelp(options, {name});
    if (words.size() < command.least_words)
        return WrongUseOf(command, name + (command.most_words == 1 ? " needs a file" : " needs a name"));
    if (words.size() > command.most_words) return WrongUseOf(command, name + " takes no '" + words.back() + "'");
    const int status = command.run(options, words);
    return fflush(stdout) != 0 && status == 0 ? 1 : status;
}
}  // namespace

int RunCommand(const Words& command_line, const Options& defaults)
{
    Options options = defaults;
    Words words;
    Words given;
    const std::string error = ReadCommandLine(command_line, &options, &words, &given);
    if (!error.empty()) return WrongUse(error);
    if (words.empty()) return WrongUse("no command given");
    std::string name = words.front();
    words.erase(words.begin());
    if (name == "--help") name = "help";
    if (name == "--version") return printf("kobctl %s\n", KOBD_VERSION) < 0 ? 1 : 0;
    for (const Command& command : kCommands)
        if (name == command.name) return Run(command, options, words, given);
    return WrongUse("unknown command '" + name + "'" + DidYouMean(NearestCommand(name)));
}
}  // namespace kobd::client
