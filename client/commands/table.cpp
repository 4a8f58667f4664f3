// kobctl table: finds the command and checks its words and options.
#include <cstdint>
#include <vector>

#include "client/commands/table_commands.h"
#include "client/dictionary/nearest.h"

namespace kobd::client
{
namespace
{
struct TableCommand
{
    const char* name;
    size_t least_words;
    size_t most_words;
    const char* words;
    int (*run)(const Options&, const Words&);
};

constexpr TableCommand kTableCommands[] = {
    {"list", 0, 1, "[PATTERN]", TableList},
    {"describe", 1, SIZE_MAX, "TABLE...", TableDescribe},
    {"columns", 1, 1, "TABLE", TableColumns},
    {"max", 1, 1, "TABLE", TableMax},
    {"dump", 1, SIZE_MAX, "TABLE...", TableDump},
    {"get", 2, SIZE_MAX, "TABLE INDEX...", TableGet},
    {"set", 3, SIZE_MAX, "TABLE INDEX COLUMN=VALUE... [TABLE INDEX COLUMN=VALUE...]", TableSet},
    {"add", 1, SIZE_MAX, "TABLE [--parent PATH] [COLUMN=VALUE...]", TableAdd},
    {"del", 2, SIZE_MAX, "TABLE INDEX...", TableDel},
};

constexpr const char* kTable = "table";  // whose help has all of them
}  // namespace

int CommandTable(const Options& options, const Words& words)
{
    const std::string name = words.empty() ? "" : words[0];
    for (const TableCommand& command : kTableCommands)
    {
        if (name != command.name) continue;
        const size_t count = words.size() - 1;
        if (count < command.least_words || count > command.most_words)
            return WrongUse(options, "table " + name + " takes " + command.words, kTable);
        if (options.silent && command.run != TableSet)
            return WrongUse(options, "table " + name + " takes no --silent", kTable);
        if (!options.parent.empty() && command.run != TableAdd)
            return WrongUse(options, "table " + name + " takes no --parent", kTable);
        return command.run(options, Words(words.begin() + 1, words.end()));
    }
    std::string names;
    std::vector<const char*> candidates;
    for (const TableCommand& command : kTableCommands)
    {
        names += std::string(names.empty() ? "" : ", ") + command.name;
        candidates.push_back(command.name);
    }
    const std::string given = name.empty() ? "" : ", not '" + name + "'" + DidYouMean(NearestOf(name, candidates));
    return WrongUse(options, "table takes one of " + names + given, kTable);
}
}  // namespace kobd::client
