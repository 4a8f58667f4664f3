// The JSON Schema of an export. Its definitions hold all objects and tables, also those that no export has.
#include "client/schema/schema.h"
#include "client/schema/value_schema.h"
#include "client/state/router_state.h"

namespace kobd::client
{
namespace
{
constexpr const char* kDefinitions = "$defs";

// The router keeps any integer in a flag's column, and so may an export have it.
Json ExportedColumns(const TableEntry& table)
{
    Json columns = Json::object();
    for (const ColumnDef& column : table.layout.columns)
    {
        if (!IsExported(table, column)) continue;
        Json& schema = columns[column.name] = SchemaOf(*kobd_describe_column(table.name, column.name));
        if (column.type != VT_BOOL) continue;
        schema["minimum"] = INT32_MIN;
        schema["maximum"] = INT32_MAX;
    }
    return columns;
}

Json ClosedObject(Json properties)
{
    return {{"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
}

Json RowSchema(const TableEntry& table)
{
    const kobd_table_description& described = *kobd_describe_table(table.name);
    Json row = ClosedObject(IsExported(table) ? ExportedColumns(table) : ColumnSchemas(described));
    if (described.meaning != nullptr) row["description"] = described.meaning;
    return row;
}

Json Definitions()
{
    Json all = ObjectSchemas();
    for (const TableEntry& table : kTableRows) all[table.name] = RowSchema(table);
    return all;
}

Json ExportedObjects()
{
    Json objects = Json::object();
    for (const ObjectEntry& object : kObjectRows)
        if (IsExported(object)) objects[object.name] = Reference(kDefinitions, object.name);
    return ClosedObject(std::move(objects));
}

Json ExportedTables()
{
    Json tables = Json::object();
    for (const TableEntry& table : kTableRows)
        if (IsExported(table))
            tables[table.name] = {
                {"type", "array"}, {"maxItems", table.max_rows}, {"items", Reference(kDefinitions, table.name)}};
    return ClosedObject(std::move(tables));
}
}  // namespace

std::string JsonSchema()
{
    Json unsettable = {{"type", "object"},
                       {"description", "Values that the router holds and would refuse, by object."},
                       {"additionalProperties", {{"type", "string"}}}};
    Json schema = {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                   {"title", "The settings of a router, as kobctl export --json prints them"}};
    schema.update(ClosedObject(
        {{"objects", ExportedObjects()}, {"unsettable", std::move(unsettable)}, {"tables", ExportedTables()}}));
    schema["required"] = {"objects", "tables"};
    schema[kDefinitions] = Definitions();
    return schema.dump(1) + "\n";
}
}  // namespace kobd::client
