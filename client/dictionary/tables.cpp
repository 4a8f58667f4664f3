// The client's view of the table rows of the catalogue.
#include "client/dictionary/tables.h"

#include "client/dictionary/nearest.h"
#include "dictionary/catalogue/layouts.h"

namespace kobd::client
{
namespace
{
// Each row is read twice: for the operations it has, and for the name of its check.
#define ADD(...) | kAdd
#define DEL(...) | kDel
#define GET(...) | kGet
#define SET(...) | kSet
#define PATH(...) | kSetParentPath
#define NEXT(...) | kNext
#define VALIDATE(...) | kValidate
#define ALL(stem) ADD() DEL() GET() SET() PATH() NEXT()
#define TABLE(name, layout, max_rows, ...) {name, layout, max_rows, name, 0u __VA_ARGS__, nullptr},
#define OWN_LIST TABLE
#define SAME_LIST(name, layout, max_rows, other) {name, layout, max_rows, other, 0u, nullptr},
constexpr TableEntry kRows[] = {
#include "dictionary/catalogue/tables.def"
};
#undef ADD
#undef DEL
#undef GET
#undef SET
#undef PATH
#undef NEXT
#undef VALIDATE
#undef TABLE
#undef SAME_LIST

#define ADD(...)
#define DEL(...)
#define GET(...)
#define SET(...)
#define PATH(...)
#define NEXT(...)
#define VALIDATE(function) #function
#define TABLE(name, layout, max_rows, ...) "" __VA_ARGS__,
#define SAME_LIST(...) "",
constexpr const char* kValidators[] = {
#include "dictionary/catalogue/tables.def"
};
static_assert(std::size(kRows) == std::size(kValidators));

std::vector<TableEntry> MakeTables()
{
    std::vector<TableEntry> tables(std::begin(kRows), std::end(kRows));
    for (size_t i = 0; i < tables.size(); ++i) tables[i].validator = kValidators[i];
    for (TableEntry& table : tables)
        for (const TableEntry& owner : tables)
            if (owner.name == std::string_view(table.list_of))
            {
                table.operations = owner.operations;
                table.validator = owner.validator;
            }
    return tables;
}
}  // namespace

std::span<const TableEntry> Tables()
{
    static const std::vector<TableEntry> tables = MakeTables();
    return tables;
}

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
