// The shell as unit tests see it: commands are written down as "run COMMAND" (their output is
// taken) and "system COMMAND", in the recording platform's list of calls. A small router answers
// them: sections and options by name, as uci would.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kobd::test
{
struct RecordingShell
{
    // Sections of tr069_interface in the order of the listing: name and type.
    std::vector<std::pair<std::string, std::string>> sections;
    std::map<std::string, std::string> options;  // "tr069_cellular.cfg1.Enable"; what is set by a command too
    std::map<std::string, std::string> outputs;  // by command: printed instead of what the router knows
    // Asked first, when set: any router at all. Nothing: what is above answers.
    std::function<std::optional<std::string>(const std::string& command)> answer;
    bool fails = false;  // nothing is printed, nothing is stored

    // Values of an option are kept as the shell would hand them over, quotes taken off.
    std::string Run(const std::string& command);

private:
    int made_ = 0;
};

extern RecordingShell shell;
void ResetShell();
}  // namespace kobd::test
