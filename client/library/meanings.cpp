// The rows of the meanings, each checked against the catalogue when this is compiled.
#include "client/library/meanings.h"

#include "dictionary/catalogue/by_name.h"

namespace kobd::client
{
namespace
{
constexpr bool HasColumn(const TableRow& table, std::string_view column)
{
    return std::ranges::any_of(table.layout.columns, [&](const ColumnDef& one) { return column == one.name; });
}

constexpr bool HasColumn(std::string_view table, std::string_view column)
{
    if (table == kEveryTable)
        return std::ranges::any_of(kTableRows, [&](const TableRow& one) { return HasColumn(one, column); });
    const size_t number = NumberIn(kTableNames, table);
    return number != kNoNumber && HasColumn(kTableRows[number], column);
}

#define MEANING(name, unit, text)                                                         \
    static_assert(NumberIn(kObjectNames, name) != kNoNumber, "there is no object " name); \
    static_assert(sizeof(text) > 1, "the meaning of " name " has no text");
#define TABLE_MEANING(name, text)                                                       \
    static_assert(NumberIn(kTableNames, name) != kNoNumber, "there is no table " name); \
    static_assert(sizeof(text) > 1, "the meaning of " name " has no text");
#define COLUMN_MEANING(table, column, unit, text)                                    \
    static_assert(HasColumn(table, column), "there is no column " table " " column); \
    static_assert(sizeof(text) > 1, "the meaning of " table " " column " has no text");
#include "dictionary/catalogue/meanings/columns.def"
#include "dictionary/catalogue/meanings/objects.def"
#include "dictionary/catalogue/meanings/tables.def"
#undef MEANING
#undef TABLE_MEANING
#undef COLUMN_MEANING

#define MEANING(name, unit, text) {nullptr, name, unit, text},
#define TABLE_MEANING(name, text) {nullptr, name, "", text},
#define COLUMN_MEANING(table, column, unit, text) {table, column, unit, text},
constexpr Meaning kObjects[] = {
#include "dictionary/catalogue/meanings/objects.def"
};
constexpr Meaning kTables[] = {
#include "dictionary/catalogue/meanings/tables.def"
};
constexpr Meaning kColumns[] = {
#include "dictionary/catalogue/meanings/columns.def"
};
}  // namespace

std::span<const Meaning> ObjectMeanings() { return kObjects; }

std::span<const Meaning> TableMeanings() { return kTables; }

std::span<const Meaning> ColumnMeanings() { return kColumns; }
}  // namespace kobd::client
