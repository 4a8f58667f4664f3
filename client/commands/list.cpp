// kobctl list [PATTERN], describe NAME..., and the names for completion: from the dictionary alone.
#include <cstdio>
#include <string>

#include "client/commands/commands.h"
#include "client/commands/table_commands.h"
#include "client/dictionary/dictionary.h"
#include "client/dictionary/nearest.h"
#include "client/dictionary/tables.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::string Positions(const std::string& name)
{
    std::string positions;
    for (size_t i = 0; i < Objects().size(); ++i)
        if (name == Objects()[i].name) positions += (positions.empty() ? "" : " and ") + std::to_string(i + 1);
    return positions;
}

void DescribeObject(const Options& options, const ObjectEntry& object, const char* separator)
{
    const std::string positions = Positions(object.name);
    const bool twice = positions.find(' ') != std::string::npos;
    const char* validator = object.validator != nullptr ? object.validator : "";
    if (options.json)
    {
        printf(
            "%s{\"name\":%s,\"kind\":\"object\",\"type\":\"%s\",\"access\":\"%s\",\"accepts\":%s,\"limitation\":%s,"
            "\"validator\":\"%s\",\"position\":\"%s\"}",
            separator, JsonString(object.name).c_str(), TypeName(object.type), AccessText(object.access),
            JsonString(Accepts(object)).c_str(),
            JsonString(object.limitation != nullptr ? object.limitation : "").c_str(), validator, positions.c_str());
        return;
    }
    printf("%s\n  type      %s\n  access    %s\n  accepts   %s\n", object.name, TypeName(object.type),
           AccessText(object.access), Accepts(object).c_str());
    if (object.validator != nullptr) printf("  checked   by %s\n", validator);
    printf("  position  %s%s\n", positions.c_str(), twice ? " (requests reach the first)" : "");
}
}  // namespace

int CommandList(const Options& options, const Words& pattern)
{
    const char* separator = "";
    int found = 0;
    const auto print = [&](const char* name, const char* kind)
    {
        if (!pattern.empty() && !MatchesName(pattern[0], name)) return;
        if (options.json)
            printf("%s{\"name\":%s,\"kind\":\"%s\"}", separator, JsonString(name).c_str(), kind);
        else
            printf("%s\n", name);
        separator = ",";
        ++found;
    };
    if (options.json) printf("[");
    for (const ObjectEntry& object : Objects()) print(object.name, "object");
    for (const TableEntry& table : Tables()) print(table.name, "table");
    if (options.json) printf("]\n");
    if (found > 0) return 0;
    SayError("no name matches '" + pattern[0] + "'");
    return 1;
}

int CommandDescribe(const Options& options, const Words& names)
{
    int status = 0;
    const char* separator = "";
    if (options.json) printf("[");
    for (const std::string& name : names)
    {
        const ObjectEntry* object = FindObject(name);
        const TableEntry* table = FindTable(name);
        if (object != nullptr)
            DescribeObject(options, *object, separator);
        else if (table != nullptr)
            DescribeTable(options, *table, separator);
        else
        {
            SayError("there is no object or table " + name + DidYouMean(Nearest(name)) + ": " + CodeText(kNotFound));
            status = 1;
            continue;
        }
        separator = ",";
    }
    if (options.json) printf("]\n");
    return status;
}

int CommandCompleteNames(const Options&, const Words& words)
{
    const std::string kind = words.empty() ? "objects" : words[0];
    const TableEntry* table = words.size() == 2 ? FindTable(words[1]) : nullptr;
    if (kind == "objects")
        for (const ObjectEntry& object : Objects()) printf("%s\n", object.name);
    if (kind == "tables")
        for (const TableEntry& one : Tables()) printf("%s\n", one.name);
    if (kind == "columns" && table != nullptr)
        for (const ColumnDef& column : table->layout.columns) printf("%s\n", column.name);
    return 0;
}
}  // namespace kobd::client
