// Reading all that can be set.
#include "client/state/router_state.h"

#include <algorithm>
#include <string_view>

#include "client/commands/table_commands.h"
#include "daemon/base/result.h"

namespace kobd::client
{
bool IsExported(const ObjectEntry& object)
{
    return object.access == Access::kReadWrite && !object.shared && FindObject(object.name) == &object;
}

bool IsExported(const TableEntry& table)
{
    return table.Has(kSet) && table.Has(kNext) && table.list_of == std::string_view(table.name);
}

bool IsExported(const ColumnDef& column) { return column.alias_of == nullptr && column.type != VT_STRING_PTR; }

int ReadRouter(const Options& options, const char* command, RouterState* state)
{
    Words names;
    for (const ObjectEntry& object : Objects())
        if (IsExported(object)) names.emplace_back(object.name);
    const Response response = ReadValues(options, names, &state->values);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, command);

    std::vector<const TableEntry*> tables;
    for (const TableEntry& table : Tables())
        if (IsExported(table)) tables.push_back(&table);
    std::string error;
    const Response dumped = DumpRows(options, tables, &state->rows, &error);
    if (dumped.code != 0) return FailRequest(options, dumped.code, dumped.from_bus, command);
    return error.empty() ? 0 : Fail(options, kSystemError, std::string(command) + ": " + error);
}

std::string ValueOf(const TableRow& row, const std::string& column)
{
    const auto found = std::find(row.columns.begin(), row.columns.end(), column);
    return found == row.columns.end() ? "" : row.values[static_cast<size_t>(found - row.columns.begin())];
}
}  // namespace kobd::client
