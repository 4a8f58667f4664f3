// Reading all that can be set.
#include "client/state/router_state.h"

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

Assignments ExportedValues(const TableEntry& table, const Row& row)
{
    Assignments values;
    for (const ColumnDef& column : table.layout.columns)
        if (IsExported(column)) values.push_back({column.name, row.ValueOf(column.name)});
    return values;
}

Failure ReadRouter(const Options& options, const std::string& what, RouterState* state)
{
    Words names;
    for (const ObjectEntry& object : kObjectRows)
        if (IsExported(object)) names.emplace_back(object.name);
    if (Failure failure = FailureOf(ReadValues(options, names, &state->values), what)) return failure;
    Tables tables;
    for (const TableEntry& table : kTableRows)
        if (IsExported(table)) tables.push_back(&table);
    return DumpRows(options, what, tables, &state->rows);
}
}  // namespace kobd::client
