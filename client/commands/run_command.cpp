// Finds the command that the words name, and runs it.
#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "client/arguments/command_line.h"
#include "client/commands/commands.h"
#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
constexpr size_t kAny = SIZE_MAX;

constexpr Command kCommands[] = {
#define COMMAND(group, name, words, least, most, options, function, summary, details) \
    {group, name, words, least, most, options, function, summary, details},
#define GROUP(group, name, words, summary, details) {group, name, words, 0, kAny, "", nullptr, summary, details},
#include "client/commands/commands.def"
#undef COMMAND
#undef GROUP
};

Failure NoSecondWord(const std::string& first, const Words& words)
{
    const Words seconds = SecondWords(first);
    const std::string what = first + " takes one of " + Joined(seconds);
    if (words.empty()) return {kWrongUse, what};
    return {kWrongUse, what + ", not '" + words[0] + "'" + DidYouMean(words[0], seconds)};
}

Failure CheckWords(const Command& command, const CommandLine& line)
{
    const std::string name = command.name;
    Words taken;
    (void)SplitLine(command.options, &taken);
    for (const std::string& option : line.own_options)
        if (std::find(taken.begin(), taken.end(), option) == taken.end())
            return {kWrongUse, name + " takes no " + option};
    if (line.words.size() < command.least_words) return {kWrongUse, name + " takes " + command.words};
    if (line.words.size() > command.most_words)
        return {kWrongUse, name + " takes no '" + line.words[command.most_words] + "'"};
    return {};
}

// Runs the command that the line begins with. `first` becomes its first word, for the help that an error names.
Outcome Run(CommandLine line, std::string* first)
{
    if (line.words.empty() && line.options.version) return {{{"version", KOBD_VERSION}}, "kobctl " KOBD_VERSION "\n"};
    if (line.words.empty() && !line.options.help) return Failure{kWrongUse, "no command given"};
    const std::string name = line.words.empty() ? "help" : line.words[0];
    const Command* command = FindNamed(kCommands, name);
    if (command == nullptr)
        return Failure{kWrongUse, "unknown command '" + name + "'" + DidYouMean(name, AllNames(kCommands))};
    *first = name == "help" ? "" : name;
    line.words.erase(line.words.begin(), line.words.begin() + (line.words.empty() ? 0 : 1));
    if (command->run == nullptr && !line.words.empty() && !line.options.help)
    {
        command = FindNamed(kCommands, name + " " + line.words[0]);
        if (command == nullptr) return NoSecondWord(name, line.words);
        line.words.erase(line.words.begin());
    }
    if (line.options.help) return CommandHelp(line.options, {name});
    if (command->run == nullptr) return NoSecondWord(name, {});
    if (Failure failure = CheckWords(*command, line)) return failure;
    return command->run(line.options, line.words);
}
}  // namespace

std::span<const Command> Commands() { return kCommands; }

Words SecondWords(const std::string& first)
{
    Words seconds;
    for (const Command& command : kCommands)
        if (const std::string name = command.name; name.starts_with(first + " "))
            seconds.push_back(name.substr(first.size() + 1));
    return seconds;
}

int RunCommand(const Words& command_line, const Options& defaults)
{
    CommandLine line = {defaults};
    std::string first;
    Outcome outcome = ReadCommandLine(command_line, &line);
    const auto names_command = [](const std::string& word)
    { return word != "help" && FindNamed(kCommands, word) != nullptr; };
    // An error is said in the form that was asked for, also where the option stands behind the mistake.
    const auto end = std::ranges::find(command_line, "--");
    if (outcome.failure && std::find(command_line.begin(), end, "--json") != end) line.options.json = true;
    if (!outcome.failure)
        outcome = Run(line, &first);
    else if (const auto word = std::ranges::find_if(command_line, names_command); word != command_line.end())
        first = *word;
    const int status = Print(line.options, outcome, first);
    return FlushOutput() || status != 0 ? status : 1;
}
}  // namespace kobd::client
