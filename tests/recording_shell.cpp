// The shell runners and system, recorded and answered.
#include "tests/recording_shell.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <regex>

#include "daemon/base/reply.h"
#include "daemon/base/shell_process.h"
#include "platform/shell.h"
#include "tests/recording_platform.h"

namespace kobd::test
{
RecordingShell shell;

void ResetShell()
{
    shell = {};
    NextRequest();
}

namespace
{
// What the shell makes of a text with single quotes.
std::string Unquoted(const std::string& text)
{
    std::string out;
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\'')
            quoted = !quoted;
        else
            out += text[i] == '\\' && !quoted && i + 1 < text.size() ? text[++i] : text[i];
    return out;
}

// What `expr` makes of a command like  expr "tr069_interface.cfg1=word" : "tr069_interface.\(PATTERN\)=word"
std::string Expr(const std::string& command)
{
    static const std::regex kExpr(R"re(expr "([^\n]*)" : "(.*)\\\((.*)\\\)(.*)")re");
    std::smatch match, name;
    if (!std::regex_match(command, match, kExpr)) return "";
    const std::string line = match[1];
    const std::regex pattern(match[2].str() + "(" + match[3].str() + ")" + match[4].str());
    return std::regex_search(line, name, pattern, std::regex_constants::match_continuous) ? name[1].str() + "\n" : "\n";
}
}  // namespace

std::string RecordingShell::Run(const std::string& command)
{
    if (fails) return "";
    if (answer)
        if (const auto given = answer(command)) return *given;
    if (const auto given = outputs.find(command); given != outputs.end()) return given->second;
    std::string rest;
    const auto is = [&](const std::string& start)
    {
        rest = command.substr(std::min(start.size(), command.size()));
        return command.starts_with(start);
    };
    if (is("uci -X show tr069_interface | grep "))
    {
        std::string listing;
        for (const auto& [name, type] : sections)
            if (type == rest) listing += "tr069_interface." + name + "=" + type + "\n";
        return listing;
    }
    if (is("uci -q get ")) return options.contains(rest) ? options[rest] + "\n" : "";
    if (is("uci set "))
        options[rest.substr(0, rest.find('='))] = Unquoted(rest.substr(rest.find('=') + 1));
    else if (is("uci delete tr069_interface."))
    {
        std::erase_if(sections, [&rest](const auto& section) { return section.first == rest; });
        options.erase("tr069_interface." + rest + ".index");
    }
    else if (is("uci add tr069_interface "))
    {
        sections.emplace_back("cfgnew" + std::to_string(++made_), rest);
        return sections.back().first + "\n";
    }
    return Expr(command);
}

namespace
{
int Take(const std::string& text, char* output, size_t size)
{
    output[text.copy(output, size - 1)] = 0;
    return shell.fails ? 127 : 0;
}
}  // namespace
}  // namespace kobd::test

using namespace kobd::test;

int shell_cmd_return_file_all(const char* command, char* output, size_t size)
{
    platform.calls.push_back(std::string("run ") + command);
    return Take(shell.Run(command), output, size);
}

int shell_cmd_return_str(const char* command, char* output, size_t size)
{
    platform.calls.push_back(std::string("run ") + command);
    const std::string all = shell.Run(command);
    return Take(all.substr(0, all.find('\n')), output, size);
}

// Takes the place of the daemon's own.
int kobd::RunShell(const char* command, int64_t)
{
    platform.calls.push_back(std::string("system ") + command);
    shell.Run(command);
    return shell.fails ? 127 : 0;
}
