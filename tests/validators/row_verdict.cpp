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
        if (line.starts_with(prefix)) verdict.own += (verdict.own.empty() ? "" : "|") + line.substr(prefix.size());
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

std::string RowCheck::Text(const std::string& row, std::string_view column) const
{
    return FieldOf(row, *ColumnOf(Table(table), column));
}

void RowCheck::Expect(const std::vector<RowCase>& cases, bool may_change) const
{
    for (const RowCase& c : cases)
    {
        const std::string row = Row(1, c.changes);
        const RowVerdict verdict = Judge(row);
        EXPECT_EQ(verdict.code, c.code) << name << ": " << c.why;
        EXPECT_EQ(verdict.own, c.own) << name << ": " << c.why;
        EXPECT_TRUE(may_change || verdict.row == row) << name << ": " << c.why;
    }
}

void RowCheck::ExpectEach(const std::vector<ColumnCase>& cases) const
{
    for (const ColumnCase& c : cases)
        for (const std::string& value : c.values)
        {
            SCOPED_TRACE(std::string(c.column) + "=" + value);
            Expect({{{{c.column, value}}, c.code, c.own, c.why}});
        }
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
    EXPECT_EQ(validator(nullptr), kRefuse) << "no row";

    Store({Row(1)});
    EXPECT_EQ(Judge(Row(1)).code, kAccept) << "a row is no duplicate of itself";
    EXPECT_EQ(Judge(Row(2)).code, kRefuse) << "but of another";
    EXPECT_EQ(Judge(Row(-2)).code, kRefuse) << "whatever the index is";

    platform.rows[table] = {{7, Row(3)}};  // after row 3 comes row 3
    const RowVerdict endless = Judge(Row(3));
    EXPECT_EQ(endless.code, kRefuse) << "what could not be read may collide";
    ASSERT_FALSE(endless.lines.empty());
    EXPECT_EQ(endless.lines.back(), "OtherRows: the stored rows have no end, given up after 4096\n");

    platform.rows.clear();
    const NoMemoryForRows none;
    const RowVerdict verdict = Judge(Row(1));
    EXPECT_EQ(verdict.code, no_memory == nullptr ? kAccept : kRefuse);
    EXPECT_EQ(verdict.own, no_memory == nullptr ? "" : no_memory);
}

void RowCheck::Store(const std::vector<std::string>& rows) const
{
    platform.rows[table].clear();
    for (const std::string& row : rows) platform.rows[table][RowIndex(row.data())] = row;
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
