// kobctl get NAME...: one value alone, several by name.
#include <unistd.h>

#include <algorithm>
#include <cctype>

#include "client/arguments/given_names.h"
#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/output/terminal.h"
#include "client/requests/request.h"
#include "client/sim/step.h"
#include "daemon/base/log.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string WhyMissing(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object != nullptr && object->access == Access::kWriteOnly)
        return name + " cannot be read: " + CodeText(kMethodUnavailable) + ", it is write-only";
    if (object != nullptr) return "the router could not read " + name + ", see " + kLogFile;
    if (FindTable(name) != nullptr)
        return name + " is a table, not an object; kobctl table dump " + name + " shows its rows";
    return NoSuchNameFailure("object", name).what;
}

// Those that show a simulated value. A program gets values alone, and costs no other request.
Words Simulated(const Options& options, const Words& names)
{
    if (options.json || isatty(STDOUT_FILENO) == 0) return {};
    const std::vector<SimLine> lines = SimLinesInPassing();
    Words simulated;
    for (const std::string& name : names)
        if (ShowsSimulated(lines, name)) simulated.push_back(name);
    return simulated;
}
// Drops tables and write-only objects that stand on standard input: kobctl list has them, too.
void PassOver(const Words& words, Words* names)
{
    const size_t passed = std::erase_if(
        *names,
        [&](const std::string& name)
        {
            const ObjectEntry* object = FindObject(name);
            const bool given = std::ranges::find(words, name) != words.end();
            return !given && (object != nullptr ? object->access == Access::kWriteOnly : FindTable(name) != nullptr);
        });
    if (passed != 0) SayError("get passes over " + Counted(passed, "name") + " of tables and write-only objects");
}
}  // namespace

Outcome ValuesOutcome(const std::vector<std::pair<std::string, std::string>>& values, bool alone,
                      const Words& simulated)
{
    Outcome outcome;
    outcome.data = Json::object();
    for (const auto& [name, value] : values)
    {
        outcome.data[name] = value;
        const bool marked = std::ranges::find(simulated, name) != simulated.end();
        outcome.text +=
            (alone ? Shown(value) : name + "=" + ShownInLine(value)) + (marked ? "  (simulated)" : "") + "\n";
    }
    return outcome;
}

Outcome CommandGet(const Options& options, const Words& words)
{
    Words names;
    if (Failure failure = ReadNames(options, words, "object that can be read", ReadableObjects(), &names))
        return failure;
    if (std::ranges::find(words, "-") != words.end()) PassOver(words, &names);
    Values values;
    if (Failure failure = FailureOf(ReadValues(options, names, &values), "get")) return failure;
    std::vector<std::pair<std::string, std::string>> found;
    std::vector<std::string> missing;
    for (const std::string& name : names)
        if (const auto value = values.find(name); value != values.end())
            found.push_back(*value);
        else
            missing.push_back(WhyMissing(name));
    if (found.empty() && missing.size() == 1) return Failure{kNotFound, missing[0]};
    Outcome outcome = ValuesOutcome(found, names.size() == 1 && names == words, Simulated(options, names));
    for (const std::string& name : names)
        outcome.data[name] = values.contains(name) ? ValueJson(kobd_describe(name.c_str()), values.at(name)) : Json();
    outcome.notes = missing;
    return outcome;
}
}  // namespace kobd::client
