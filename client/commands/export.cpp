// kobctl export [FILE]: all that can be set, in one file.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/commands/commands.h"
#include "client/dictionary/diagnose.h"
#include "client/state/router_state.h"
#include "client/state/settings_file.h"
#include "daemon/base/result.h"
#include "host/state/state_store.h"

namespace kobd::client
{
namespace
{
// 1 when an object could not be read, after a line for each.
int AppendValues(const RouterState& state, SettingsFile* file)
{
    int status = 0;
    for (const ObjectEntry& object : Objects())
    {
        if (!IsExported(object)) continue;
        const auto found = state.values.find(object.name);
        if (found != state.values.end())
        {
            // A router may hold what its own limits refuse, as an empty text from the factory.
            const bool settable = WhatIsWrong(object.name, found->second).empty();
            file->values.push_back({0, (settable ? "" : "# ") + std::string(object.name), found->second});
            continue;
        }
        SayError("export: " + std::string(object.name) + " could not be read by the router and is left out");
        status = 1;
    }
    return status;
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
                if (const std::string value = ValueOf(row, column.name); IsExported(column) && !value.empty())
                    out.values.push_back({0, column.name, value});
            file->tables.back().rows.push_back(out);
        }
    }
}

int Save(const Options& options, const std::string& path, const std::string& text)
{
    struct stat there;
    if (stat(path.c_str(), &there) == 0 && !S_ISREG(there.st_mode))
        return Fail(options, kSystemError,
                    "export: " + path + " is not a file; without FILE it goes to standard output");
    if (host::SaveText(path, text)) return 0;
    return Fail(options, kSystemError, "export: cannot write " + path + ": " + strerror(errno));
}
}  // namespace

int CommandExport(const Options& options, const Words& words)
{
    if (options.json) return WrongUse(options, "export takes no --json, its file has one form", "export");
    RouterState state;
    if (const int status = ReadRouter(options, "export", &state)) return status;
    SettingsFile file;
    const int incomplete = AppendValues(state, &file);
    AppendTables(state, &file);
    const std::string text = SettingsText(file);
    if (!words.empty())
    {
        const int status = Save(options, words[0], text);
        return status != 0 ? status : incomplete;
    }
    return fputs(text.c_str(), stdout) < 0 ? 1 : incomplete;
}
}  // namespace kobd::client
