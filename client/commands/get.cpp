// kobctl get NAME...
#include <cstdio>

#include "client/commands/commands.h"
#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "client/requests/read_values.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string WhyMissing(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object != nullptr && object->access == Access::kWriteOnly)
        return name + " cannot be read: " + ResultText(kMethodUnavailable) + " (16), it is write-only";
    if (object != nullptr) return name + " could not be read by the router, see the log";
    if (FindTable(name) != nullptr) return name + " is a table, not an object";
    return "there is no object " + name + DidYouMean(Nearest(name)) + ": " + ResultText(kNotFound) + " (1)";
}

void Print(const Options& options, const Words& names, const Values& values)
{
    const char* separator = "";
    if (options.json) printf("{");
    for (const std::string& name : names)
    {
        const auto found = values.find(name);
        if (found == values.end()) continue;
        if (options.json)
            printf("%s%s:%s", separator, JsonString(name).c_str(), JsonString(found->second).c_str());
        else if (names.size() == 1)
            printf("%s\n", Shown(found->second).c_str());
        else
            printf("%s=%s\n", name.c_str(), Shown(found->second).c_str());
        separator = ",";
    }
    if (options.json) printf("}\n");
}
}  // namespace

int CommandGet(const Options& options, const Words& names)
{
    Values values;
    const Response response = ReadValues(options, names, &values);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "get");
    Print(options, names, values);
    int status = 0;
    for (const std::string& name : names)
    {
        if (values.contains(name)) continue;
        SayError(WhyMissing(name));
        status = 1;
    }
    return status;
}
}  // namespace kobd::client
