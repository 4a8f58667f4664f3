// kobctl export [FILE]: all that can be set, in one file.
#include <sys/stat.h>

#include "client/commands/commands.h"
#include "client/dictionary/diagnose.h"
#include "client/state/router_state.h"
#include "client/state/settings_file.h"
#include "daemon/base/result.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
// Appends the values of all objects. A note for each that could not be read.
void AppendValues(const RouterState& state, SettingsFile* file, std::vector<std::string>* notes)
{
    for (const ObjectEntry& object : Objects())
    {
        if (!IsExported(object)) continue;
        const std::string name = object.name;
        const auto found = state.values.find(name);
        if (found == state.values.end())
        {
            notes->push_back("export: " + name + " could not be read by the router and is left out");
            continue;
        }
        // A router may hold what its own limits refuse, for example an empty text from the factory.
        const bool settable = WhatIsWrong(name, found->second).empty();
        file->values.push_back({0, (settable ? "" : "# ") + name, found->second});
    }
}

void AppendTables(const RouterState& state, SettingsFile* file)
{
    for (const TableEntry& table : Tables())
    {
        if (!IsExported(table)) continue;
        file->tables.push_back({0, table.name});
        for (const TableRow& row : state.rows)
        {
            if (row.table != table.name) continue;
            FileRow out = {0};
            for (const ColumnDef& column : table.layout.columns)
                if (const std::string value = row.ValueOf(column.name); IsExported(column) && !value.empty())
                    out.values.push_back({0, column.name, value});
            file->tables.back().rows.push_back(out);
        }
    }
}

Failure Save(const std::string& path, const std::string& text)
{
    struct stat there;
    if (stat(path.c_str(), &there) == 0 && !S_ISREG(there.st_mode))
        return {kSystemError, "export: " + path + " is not a file; without FILE it goes to standard output"};
    return host::SaveText(path, text) ? Failure() : SystemFailure("export: cannot write " + path);
}
}  // namespace

Outcome CommandExport(const Options& options, const Words& words)
{
    if (options.json) return Failure{kWrongUse, "export takes no --json, its file has one form"};
    RouterState state;
    if (Failure failure = ReadRouter(options, "export", &state)) return failure;
    SettingsFile file;
    Outcome outcome;
    AppendValues(state, &file, &outcome.notes);
    AppendTables(state, &file);
    if (words.empty())
        outcome.text = SettingsText(file);
    else
        outcome.failure = Save(words[0], SettingsText(file));
    return outcome;
}
}  // namespace kobd::client
