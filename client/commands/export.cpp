// kobctl export [FILE]: all that can be set, in one file, or on standard output.
#include <sys/stat.h>

#include "client/commands/commands.h"
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
}  // namespace

Outcome CommandExport(const Options& options, const Words& words)
{
    RouterState state;
    if (Failure failure = ReadRouter(options, "export", &state)) return failure;
    Words unread;
    Outcome outcome({}, SettingsText(state, &unread));
    if (options.json) outcome.data = SettingsJson(state);
    for (const std::string& name : unread)
        outcome.notes.push_back("export: the router could not read " + name + ", so it is left out");
    if (words.empty() || words[0] == "-") return outcome;
    outcome.failure = Save(words[0], options.json ? JsonLine(outcome.data) : outcome.text);
    outcome.text.clear();
    outcome.data = outcome.failure ? Json() : Json{{"written", words[0]}};
    return outcome;
}
}  // namespace kobd::client
