// Reading all that can be set.
#include "client/state/router_state.h"

#include <algorithm>

namespace kobd::client
{
namespace
{
struct CountedColumn
{
    std::string_view table;
    std::string_view column;
};

#define CLOCK(object) object,
#define SECONDS(object, when) object,
#define COUNTS(object, when) object,
#define SINCE(object, network) object,
#define SHOWS(...)
#define SECONDS_IN(...)
#define COUNTS_IN(...)
#define SHOWS_IN(...)
constexpr std::string_view kCountedObjects[] = {
#include "host/factory/moving.def"
};
#undef CLOCK
#undef SECONDS
#undef COUNTS
#undef SINCE
#undef SECONDS_IN
#undef COUNTS_IN
#define CLOCK(...)
#define SECONDS(...)
#define COUNTS(...)
#define SINCE(...)
#define SECONDS_IN(table, column, when) {table, column},
#define COUNTS_IN(table, column, when) {table, column},
constexpr CountedColumn kCountedColumns[] = {
#include "host/factory/moving.def"
};
}  // namespace

bool IsExported(const ObjectEntry& object)
{
    if (std::ranges::find(kCountedObjects, object.name) != std::end(kCountedObjects)) return false;
    return object.access == Access::kReadWrite && !object.shared && FindObject(object.name) == &object;
}

bool IsExported(const TableEntry& table)
{
    return table.Has(kSet) && table.Has(kNext) && table.list_of == std::string_view(table.name);
}

bool IsExported(const TableEntry& table, const ColumnDef& column)
{
    const auto is_same = [&](const CountedColumn& counted)
    { return counted.table == table.name && counted.column == column.name; };
    return column.alias_of == nullptr && column.type != VT_STRING_PTR && std::ranges::none_of(kCountedColumns, is_same);
}

Assignments ExportedValues(const TableEntry& table, const Row& row)
{
    Assignments values;
    for (const ColumnDef& column : table.layout.columns)
        if (IsExported(table, column)) values.push_back({column.name, row.ValueOf(column.name)});
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
