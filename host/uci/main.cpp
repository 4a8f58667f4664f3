// uci, as far as the daemon needs it, for hosts that have none: reads and writes configurations in
// the host platform's state folder. Exit status 0, or 1 and a line on standard error.
#include <unistd.h>

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "host/uci/configuration.h"
#include "host/uci/files.h"

namespace
{
using namespace kobd::host;

using Arguments = std::span<char* const>;

constexpr const char* kUsage =
    "usage: uci [-q] [-X] COMMAND\n"
    "  show CONFIG                  all sections and options\n"
    "  get CONFIG.SECTION[.OPTION]  a value, or a section's type\n"
    "  set CONFIG.SECTION[.OPTION]=VALUE\n"
    "  add CONFIG TYPE              makes a section, prints its name\n"
    "  delete CONFIG.SECTION[.OPTION]\n"
    "  commit [CONFIG]\n"
    "  -q  no error texts    -X  names of sections made by add as they are (always so)\n";

int Refuse(std::string_view subject, const char* why)
{
    fprintf(stderr, "uci: %.*s: %s\n", static_cast<int>(subject.size()), subject.data(), why);
    return 1;
}

// The settings that a command works on; a configuration that is not there is empty.
bool Load(const std::string& config, Settings* settings) { return LoadUci(config, settings) != UciLoad::kUnusable; }

bool ParseSection(std::string_view text, UciName* name) { return ParseUciName(text, name) && !name->section.empty(); }

int Show(Arguments arguments)
{
    UciName name;
    Settings settings;
    if (!ParseUciName(arguments[0], &name) || !name.section.empty())
        return Refuse(arguments[0], "not the name of a configuration");
    const UciLoad load = LoadUci(name.config, &settings);
    if (load == UciLoad::kMissing) return Refuse(name.config, "no such configuration");
    if (load == UciLoad::kUnusable) return 1;
    fputs(ShowSettings(settings, name.config).c_str(), stdout);
    return 0;
}

int Get(Arguments arguments)
{
    UciName name;
    Settings settings;
    if (!ParseSection(arguments[0], &name)) return Refuse(arguments[0], "not CONFIG.SECTION[.OPTION]");
    if (!Load(name.config, &settings)) return 1;
    const std::string* value = FindSetting(settings, name);
    if (value == nullptr) return Refuse(arguments[0], "no such entry");
    puts(value->c_str());
    return 0;
}

int Set(Arguments arguments)
{
    const std::string_view text = arguments[0];
    const size_t equals = text.find('=');
    UciName name;
    Settings settings;
    if (equals == std::string_view::npos || !ParseSection(text.substr(0, equals), &name))
        return Refuse(text, "not CONFIG.SECTION[.OPTION]=VALUE");
    const std::string_view value = text.substr(equals + 1);
    if (name.option.empty() && !IsUciType(value)) return Refuse(text, "not the type of a section");
    if (!Load(name.config, &settings)) return 1;
    ChangeSetting(&settings, name, value);
    return StageUci(name.config, settings) ? 0 : 1;
}

int Add(Arguments arguments)
{
    UciName name;
    Settings settings;
    if (!ParseUciName(arguments[0], &name) || !name.section.empty())
        return Refuse(arguments[0], "not the name of a configuration");
    if (!IsUciType(arguments[1])) return Refuse(arguments[1], "not the type of a section");
    if (!Load(name.config, &settings)) return 1;
    const std::string section = AddSection(&settings, arguments[1]);
    if (!StageUci(name.config, settings)) return 1;
    puts(section.c_str());
    return 0;
}

int Delete(Arguments arguments)
{
    UciName name;
    Settings settings;
    if (!ParseSection(arguments[0], &name)) return Refuse(arguments[0], "not CONFIG.SECTION[.OPTION]");
    if (!Load(name.config, &settings)) return 1;
    if (!RemoveSetting(&settings, name)) return Refuse(arguments[0], "no such entry");
    return StageUci(name.config, settings) ? 0 : 1;
}

int Commit(Arguments arguments)
{
    if (arguments.empty()) return CommitAllUci() ? 0 : 1;
    UciName name;
    if (!ParseUciName(arguments[0], &name) || !name.section.empty())
        return Refuse(arguments[0], "not the name of a configuration");
    return CommitUci(name.config) ? 0 : 1;
}

struct Command
{
    std::string_view name;
    size_t fewest;  // arguments
    size_t most;
    int (*run)(Arguments arguments);
};

constexpr Command kCommands[] = {
    {"show", 1, 1, Show}, {"get", 1, 1, Get},       {"set", 1, 1, Set},
    {"add", 2, 2, Add},   {"delete", 1, 1, Delete}, {"commit", 0, 1, Commit},
};

int Run(Arguments words)
{
    if (words.empty()) return Refuse("no command", kUsage);
    const Arguments arguments = words.subspan(1);
    for (const Command& command : kCommands)
    {
        if (command.name != words[0]) continue;
        if (arguments.size() < command.fewest || arguments.size() > command.most)
            return Refuse(words[0], "wrong number of arguments");
        if (!LockUci()) return 1;
        const int status = command.run(arguments);
        // A library that writes each line at once has nothing left to flush, but remembers the error.
        const bool written = fflush(stdout) == 0 && ferror(stdout) == 0;
        return written ? status : Refuse(words[0], "cannot write the output");
    }
    return Refuse(words[0], "no such command");
}
}  // namespace

int main(int count, char** words)
{
    opterr = 0;  // errors are said in one way
    for (int option = getopt(count, words, "+qX"); option != -1; option = getopt(count, words, "+qX"))
    {
        if (option == 'q' && freopen("/dev/null", "w", stderr) == nullptr) return 1;
        if (option == '?')
        {
            fputs(kUsage, stderr);
            return 1;
        }
    }
    return Run({words + optind, words + count});
}
