// kobctl export [FILE]: all that can be set, in one file, or on standard output.
#include <sys/stat.h>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/sim/step.h"
#include "client/state/settings_file.h"
#include "daemon/base/result.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
Failure Save(const std::string& path, const std::string& text)
{
    struct stat there;
    if (stat(path.c_str(), &there) == 0 && !S_ISREG(there.st_mode))
        return {kSystemError,
                "export: " + path + " is not a regular file; without FILE, export writes to standard output"};
    return host::SaveText(path, text) ? Failure() : SystemFailure("export: cannot write " + path);
}
// What the simulator shows would become a setting where the file is imported.
void SayWhatIsSimulated(const RouterState& state)
{
    const std::vector<SimLine> lines = SimLinesInPassing();
    Words simulated;
    for (const auto& [name, value] : state.values)
        if (ShowsSimulated(lines, name)) simulated.push_back(name);
    for (const SimLine& line : lines)
        if (line.what == "row" && state.rows.contains(line.name)) simulated.push_back(line.name + " row " + line.how);
    if (!simulated.empty())
        SayError("export: note: the simulator shows some of this, and an import would set it: " + Joined(simulated) +
                 "; kobctl sim clear ends that");
}
}  // namespace

Outcome CommandExport(const Options& options, const Words& words)
{
    RouterState state;
    if (Failure failure = ReadRouter(options, "export", &state)) return failure;
    SayWhatIsSimulated(state);
    Words unread;
    Outcome outcome({}, SettingsText(state, &unread));
    if (options.json) outcome.data = SettingsJson(state);
    for (const std::string& name : unread)
        outcome.notes.push_back("export: the router could not read " + name + ", so it is left out");
    if (words.empty() || words[0] == "-")
    {
        std::string shown;
        for (const std::string_view line : LinesOf(outcome.text)) shown += Shown(line) + "\n";
        outcome.text = shown;
        return outcome;
    }
    outcome.failure = Save(words[0], options.json ? JsonLine(outcome.data) : outcome.text);
    outcome.text.clear();
    outcome.data = outcome.failure ? Json() : Json{{"written", words[0]}};
    return outcome;
}
}  // namespace kobd::client
