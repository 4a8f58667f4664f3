// The client's view of the table rows of the catalogue.
#include "client/dictionary/tables.h"

#include "client/dictionary/nearest.h"

namespace kobd::client
{
std::span<const TableEntry> Tables() { return kTableRows; }

const TableEntry* FindTable(std::string_view name)
{
    for (const TableEntry& table : Tables())
        if (name == table.name) return &table;
    return nullptr;
}

const ColumnDef* FindColumn(const TableEntry& table, std::string_view name)
{
    for (const ColumnDef& column : table.layout.columns)
        if (name == column.name) return &column;
    return nullptr;
}

std::string NearestTable(std::string_view name)
{
    std::vector<const char*> names;
    for (const TableEntry& table : Tables()) names.push_back(table.name);
    return NearestOf(name, names);
}

std::string NearestColumn(const TableEntry& table, std::string_view name)
{
    std::vector<const char*> names;
    for (const ColumnDef& column : table.layout.columns) names.push_back(column.name);
    return NearestOf(name, names);
}

std::vector<std::string> OperationNames(const TableEntry& table)
{
    static constexpr const char* kNames[] = {"add", "del", "get", "set", "setPPath", "next", "validate"};
    std::vector<std::string> names;
    for (size_t i = 0; i < std::size(kNames); ++i)
        if ((table.operations & 1u << i) != 0) names.emplace_back(kNames[i]);
    return names;
}
}  // namespace kobd::client
