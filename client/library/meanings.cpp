// The rows of the meanings, each checked against the catalogue when this is compiled.
#include "client/library/meanings.h"

#include "dictionary/catalogue/by_name.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kEvery = "*";

constexpr uint16_t Number(size_t number) { return static_cast<uint16_t>(number); }

constexpr bool HasColumn(const TableRow& table, std::string_view column)
{
    return std::ranges::any_of(table.layout.columns, [&](const ColumnDef& one) { return column == one.name; });
}

constexpr bool HasColumn(std::string_view table, std::string_view column)
{
    if (table == kEvery)
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
#include "dictionary/catalogue/meanings/column_meanings.def"
#include "dictionary/catalogue/meanings/object_meanings.def"
#include "dictionary/catalogue/meanings/table_meanings.def"
#undef MEANING
#undef TABLE_MEANING
#undef COLUMN_MEANING

// A compiler need not take texts above 65536 bytes; ours do.
#pragma GCC diagnostic ignored "-Woverlength-strings"

// Once for each part of the rows.
#define MEANING(name, unit, text) Number(NumberIn(kObjectNames, name)),
constexpr uint16_t kObjectNumbers[] = {
#include "dictionary/catalogue/meanings/object_meanings.def"
};
#undef MEANING
#define MEANING(name, unit, text) text "\0"
constexpr char kObjectTexts[] =
#include "dictionary/catalogue/meanings/object_meanings.def"
    ;
#undef MEANING
#define MEANING(name, unit, text) unit "\0"
constexpr char kObjectUnits[] =
#include "dictionary/catalogue/meanings/object_meanings.def"
    ;
#undef MEANING

#define TABLE_MEANING(name, text) Number(NumberIn(kTableNames, name)),
constexpr uint16_t kTableNumbers[] = {
#include "dictionary/catalogue/meanings/table_meanings.def"
};
#undef TABLE_MEANING
#define TABLE_MEANING(name, text) text "\0"
constexpr char kTableTexts[] =
#include "dictionary/catalogue/meanings/table_meanings.def"
    ;
#undef TABLE_MEANING

#define COLUMN_MEANING(table, column, unit, text) table == kEvery ? kEveryTable : Number(NumberIn(kTableNames, table)),
constexpr uint16_t kColumnTables[] = {
#include "dictionary/catalogue/meanings/column_meanings.def"
};
#undef COLUMN_MEANING
#define COLUMN_MEANING(table, column, unit, text) column "\0"
constexpr char kColumnNames[] =
#include "dictionary/catalogue/meanings/column_meanings.def"
    ;
#undef COLUMN_MEANING
#define COLUMN_MEANING(table, column, unit, text) text "\0"
constexpr char kColumnTexts[] =
#include "dictionary/catalogue/meanings/column_meanings.def"
    ;
#undef COLUMN_MEANING
#define COLUMN_MEANING(table, column, unit, text) unit "\0"
constexpr char kColumnUnits[] =
#include "dictionary/catalogue/meanings/column_meanings.def"
    ;
#undef COLUMN_MEANING
}  // namespace

const MeaningRows kObjectMeanings = {kObjectNumbers, nullptr, kObjectUnits, kObjectTexts};
const MeaningRows kTableMeanings = {kTableNumbers, nullptr, nullptr, kTableTexts};
const MeaningRows kColumnMeanings = {kColumnTables, kColumnNames, kColumnUnits, kColumnTexts};
}  // namespace kobd::client
