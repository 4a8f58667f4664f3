// What objects, tables and columns mean, and the units of their values.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>

namespace kobd::client
{
// Stands where the number of a table would. The meaning is then that of the column in every table without a row for it.
inline constexpr uint16_t kEveryTable = UINT16_MAX;

struct Meaning
{
    uint16_t number;     // of the object or table in the catalogue
    const char* column;  // empty: the object or table itself
    const char* unit;    // empty: none
    const char* text;    // one line
};

// The rows of a file of meanings. Texts stand one behind the other, each with its zero byte: thousands of pointers
// would make the library a third larger.
struct MeaningRows
{
    std::span<const uint16_t> numbers;
    const char* columns;  // nullptr: no row is about a column
    const char* units;    // nullptr: no row has one
    const char* texts;
};

extern const MeaningRows kObjectMeanings;
extern const MeaningRows kTableMeanings;
extern const MeaningRows kColumnMeanings;  // those of every table at the end

template <class Use>
void ForEachMeaning(const MeaningRows& rows, Use use)
{
    const auto next = [](const char* text) { return text != nullptr ? text + strlen(text) + 1 : nullptr; };
    Meaning one = {0, rows.columns, rows.units, rows.texts};
    for (const uint16_t number : rows.numbers)
    {
        use(Meaning{number, one.column != nullptr ? one.column : "", one.unit != nullptr ? one.unit : "", one.text});
        one = {0, next(one.column), next(one.unit), next(one.text)};
    }
}
}  // namespace kobd::client
