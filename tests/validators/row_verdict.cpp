// Calls row validators on blocks of exactly a row's size and takes their log lines apart.
#include "tests/validators/row_verdict.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>
#include <span>

#include "dictionary/name_index.h"
#include "dictionary/row_field.h"
#include "tables/row_codec.h"
#include "tests/process_setup.h"
#include "tests/recording_platform.h"
#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
bool no_memory_for_rows = false;
}  // namespace

RowVerdict JudgeRow(int (*validator)(void*), const char* name, const std::string& row)
{
    constexpr size_t kOdd = 1;  // blocks from the heap lie at even addresses
    const std::unique_ptr<char[]> block(new char[kOdd + row.size()]);
    memcpy(block.get() + kOdd, row.data(), row.size());

    RowVerdict verdict;
    OutputCapture output;
    verdict.code = validator(block.get() + kOdd);
    verdict.row.assign(block.get() + kOdd, row.size());
    verdict.lines = LogLines(output.Text());
    const std::string prefix = std::string(name) + ": ";
    for (const std::string& line : verdict.lines)
        if (line.starts_with(prefix)) verdict.own.push_back(line.substr(prefix.size()));
    return verdict;
}

std::string RowCheck::Row(int32_t index, const Fields& changes) const
{
    Fields fields = good;
    fields.insert(fields.end(), changes.begin(), changes.end());
    return RowBytes(Table(table), index, fields);
}

std::string RowCheck::Unended(std::string_view column, char c) const
{
    const ColumnDef& field = *ColumnOf(Table(table), column);
    return Row(1).replace(field.offset, FieldWidth(field), FieldWidth(field), c);
}

void RowCheck::ExpectNothingBesideFields() const
{
    for (const ColumnDef& column : std::span(Table(table).columns, Table(table).column_count))
        for (const char c : {'1', 'a', ' ', '-'})
        {
            const std::string row = Unended(column.name, c);
            RowVerdict verdict = Judge(row);
            const std::string field = row.substr(column.offset, FieldWidth(column));
            verdict.row.replace(column.offset, field.size(), field);
            EXPECT_EQ(verdict.row, row) << column.name << " of " << c;
        }
}

void RowCheck::ExpectWalk(const char* no_memory) const
{
    EXPECT_EQ(validator(nullptr), kRefuses) << "no row";

    platform.rows[table] = {{1, Row(1)}};
    EXPECT_EQ(Judge(Row(1)).code, kTakes) << "a row is no duplicate of itself";
    EXPECT_EQ(Judge(Row(2)).code, kRefuses) << "but of another";
    EXPECT_EQ(Judge(Row(-2)).code, kRefuses) << "whatever the index is";

    platform.rows[table] = {{7, Row(3)}};  // after row 3 comes row 3
    const RowVerdict endless = Judge(Row(3));
    EXPECT_EQ(endless.code, kRefuses) << "what could not be read may collide";
    ASSERT_FALSE(endless.lines.empty());
    EXPECT_EQ(endless.lines.back(), "OtherRows: the stored rows have no end, given up after 4096\n");

    platform.rows.clear();
    const NoMemoryForRows none;
    const RowVerdict verdict = Judge(Row(1));
    EXPECT_EQ(verdict.code, no_memory == nullptr ? kTakes : kRefuses);
    const bool silent = no_memory == nullptr || *no_memory == 0;
    EXPECT_EQ(verdict.own, silent ? Lines{} : Lines{no_memory});
}

void ResetRows()
{
    NameIndexBuild();
    ResetPlatform();
}

NoMemoryForRows::NoMemoryForRows() { no_memory_for_rows = true; }
NoMemoryForRows::~NoMemoryForRows() { no_memory_for_rows = false; }
}  // namespace kobd::test

// The validators ask for a row's block without exceptions; everything else in a test does not.
void* operator new[](size_t size, const std::nothrow_t&) noexcept
{
    return kobd::test::no_memory_for_rows ? nullptr : ::operator new[](size);
}
