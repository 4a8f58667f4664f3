// kobctl help [COMMAND]: pages of at most 24 lines and 80 columns, made from the rows of the commands.
#include <string>
#include <string_view>

#include "client/commands/commands.h"
#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kMore = "More";  // the group of commands that the overview only names
constexpr char kEnd[] =
    "\n"
    "kobctl help COMMAND has examples. All take --timeout SECONDS (5) and,\n"
    "but for schema, --json.\n"
    "Exit status: 0 success, 1 refused or failed, 2 wrong use, 3 open or not saved.\n";

std::string Padded(std::string text, size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string Usage(const Command& command)
{
    return std::string(command.name) + (*command.words == 0 ? "" : " ") + command.words;
}

bool IsTwoWords(const Command& command) { return std::string_view(command.name).find(' ') != std::string_view::npos; }

std::string Overview()
{
    std::string text = "kobctl: reads and changes the router's objects and tables\n\n";
    std::string_view last;
    Words more;
    for (const Command& command : Commands())
    {
        if (*command.group == 0 || IsTwoWords(command)) continue;
        if (command.group == kMore)
        {
            more.push_back(command.name);
            continue;
        }
        text +=
            Padded(last == command.group ? "" : command.group, 8) + Padded(Usage(command), 21) + command.summary + "\n";
        last = command.group;
    }
    return text + "More    " + Joined(more) + "\n" + kEnd;
}

// The commands of two words that begin with this one, a line each.
std::string SecondCommands(const Command& first)
{
    constexpr size_t kColumn = 28;
    std::string text;
    for (const Command& command : Commands())
    {
        if (!std::string_view(command.name).starts_with(std::string(first.name) + " ")) continue;
        const std::string usage = "  " + Usage(command).substr(std::string_view(first.name).size() + 1);
        text += Padded(usage, kColumn) + (usage.size() < kColumn ? "" : "\n" + std::string(kColumn, ' ')) +
                command.summary + "\n";
    }
    return text;
}

std::string Page(const Command& command)
{
    std::string details = command.details;
    if (details.starts_with('\n')) details.erase(0, 1);
    return "kobctl " + Usage(command) + ": " + command.summary + "\n\n" +
           (command.run == nullptr ? SecondCommands(command) + "\n" : "") + details;
}

Outcome HelpOutcome(const std::string& text) { return {{{"help", text}}, text}; }
}  // namespace

Outcome CommandHelp(const Options&, const Words& words)
{
    if (words.empty() || words[0] == "help") return HelpOutcome(Overview());
    const Command* command = FindNamed(Commands(), words[0]);
    if (command != nullptr) return HelpOutcome(Page(*command));
    return Failure{kWrongUse, "there is no command " + words[0] + DidYouMean(words[0], AllNames(Commands()))};
}
}  // namespace kobd::client
