// The rows of the meanings, each checked against the catalogue when this is compiled.
#include "client/library/meanings.h"

#include "dictionary/catalogue/by_name.h"

namespace kobd::client
{
namespace
{
constexpr bool IsNamed(std::string_view name)
{
    return NumberIn(kObjectNames, name) != kNoNumber || NumberIn(kTableNames, name) != kNoNumber;
}

constexpr bool HasColumn(std::string_view table, std::string_view column)
{
    const size_t number = NumberIn(kTableNames, table);
    if (number == kNoNumber) return false;
    for (const ColumnDef& one : kTableRows[number].layout.columns)
        if (column == one.name) return true;
    return false;
}

#define MEANING(name, unit, text)                                      \
    static_assert(IsNamed(name), "there is no object or table " name); \
    static_assert(sizeof(text) > 1, "the meaning of " name " has no text");
#define COLUMN_MEANING(table, column, unit, text)                                    \
    static_assert(HasColumn(table, column), "there is no column " table " " column); \
    static_assert(sizeof(text) > 1, "the meaning of " table " " column " has no text");
#include "dictionary/catalogue/meanings/columns.def"
#include "dictionary/catalogue/meanings/objects.def"
#undef MEANING
#undef COLUMN_MEANING

#define MEANING(name, unit, text) {nullptr, name, unit, text},
#define COLUMN_MEANING(table, column, unit, text) {table, column, unit, text},
constexpr Meaning kObjects[] = {
#include "dictionary/catalogue/meanings/objects.def"
};
constexpr Meaning kColumns[] = {
#include "dictionary/catalogue/meanings/columns.def"
};
#undef MEANING
#undef COLUMN_MEANING
}  // namespace

std::span<const Meaning> ObjectMeanings() { return kObjects; }

std::span<const Meaning> ColumnMeanings() { return kColumns; }
}  // namespace kobd::client
