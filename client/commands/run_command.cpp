// The commands of kobctl with the words and options each takes.
#include "client/commands/run_command.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "client/arguments/command_line.h"
#include "client/dictionary/nearest.h"
#include "client/output/output.h"

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
    {"help", 0, SIZE_MAX, "", CommandHelp},
    {"complete-names", 0, 2, "", CommandCompleteNames},
};

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
        if (!Takes(command, option)) return WrongUse(options, name + " takes no " + option, name);
    if (options.help) return CommandHelp(options, {name});
    if (words.size() < command.least_words)
        return WrongUse(options, name + (command.most_words == 1 ? " needs a file" : " needs a name"), name);
    if (words.size() > command.most_words)
        return WrongUse(options, name + " takes no '" + words[command.most_words] + "'", name);
    const int status = command.run(options, words);
    return FlushOutput() || status != 0 ? status : 1;
}
}  // namespace

int RunCommand(const Words& command_line, const Options& defaults)
{
    Options options = defaults;
    Words words;
    Words given;
    const std::string error = ReadCommandLine(command_line, &options, &words, &given);
    if (!error.empty()) return WrongUse(options, error);
    if (words.empty() && options.version)
    {
        printf("kobctl %s\n", KOBD_VERSION);
        return FlushOutput() ? 0 : 1;
    }
    if (words.empty() && !options.help) return WrongUse(options, "no command given");
    const std::string name = words.empty() ? "help" : words.front();
    if (!words.empty()) words.erase(words.begin());
    for (const Command& command : kCommands)
        if (name == command.name) return Run(command, options, words, given);
    return WrongUse(options, "unknown command '" + name + "'" + DidYouMean(NearestCommand(name)));
}
}  // namespace kobd::client
