// Rows as items and texts as fields, for every value type, on unaligned bytes that end where their
// block ends.
#include "tables/row_codec.h"

#include <climits>
#include <cstring>
#include <memory>
#include <random>

#include "dictionary/row_field.h"
#include "tables/change_items.h"
#include "tables/pending_rows.h"
#include "tests/tables/table_rows.h"

namespace kobd::test
{
using namespace std::string_literals;

namespace
{
constexpr uint32_t kOffset = 5;  // odd, as a field may lie

// A row of one field at the end of a heap block of exactly its size.
class OneFieldRow
{
public:
    OneFieldRow(ValueType type, const std::string& field, uint32_t length)
        : column_{"C", kOffset, type, length},
          table_{kKindTable, "T", nullptr, &column_, 1, static_cast<uint32_t>(kOffset + field.size()), nullptr, 1},
          block_(new char[kOffset + field.size()]())
    {
        block_[0] = 7;
        memcpy(block_.get() + kOffset, field.data(), field.size());
    }

    std::string Items() const
    {
        std::string items(kPayloadMax, '\0');
        TlvWriter writer(items);
        const size_t size = TableRowToTlv(block_.get(), table_, writer);
        return items.substr(0, size);
    }

    int Store(const std::string& text) { return TableFieldFromString(block_.get(), column_, text.c_str()); }
    std::string Bytes() const { return {block_.get() + kOffset, table_.row_size - kOffset}; }

private:
    ColumnDef column_;
    TableDef table_;
    std::unique_ptr<char[]> block_;
};

template <typename Number>
std::string Bytes(Number number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}
}  // namespace

TEST(RowCodec, TextsAsFieldsAndFieldsAsText)
{
    const std::string four = "####";
    const struct
    {
        ValueType type;
        const char* text;  // that is stored; nullptr: the field is as `after` says
        std::string before;
        std::string after;
        const char* shown;
        int result = 0;
        uint32_t length = 0;  // of a text
    } kCases[] = {
        {VT_INT32, "-2147483648", four, Bytes(INT32_MIN), "-2147483648"},
        {VT_INT32, "2147483648", four, Bytes(INT32_MAX), "2147483647"},
        {VT_INT32, " +12x", four, Bytes(12), "12"},
        {VT_INT32, "x12", four, Bytes(0), "0"},
        {VT_INT32, "0x10", four, Bytes(0), "0"},
        {VT_INT16, "65537", "##", Bytes(int16_t{1}), "1"},
        {VT_INT16, "-1", "##", "\xFF\xFF", "-1"},
        {VT_INT8, "-1", "#", "\xFF", "255"},
        {VT_INT8, "256", "#", "\0"s, "0"},
        {VT_UINT64, "0x10", four + four, Bytes(uint64_t{16}), "16"},
        {VT_UINT64, "010", four + four, Bytes(uint64_t{8}), "8"},
        {VT_UINT64, "18446744073709551616", four + four, Bytes(UINT64_MAX), "18446744073709551615"},
        {VT_UINT32, "0x10", four, Bytes(0), "0"},
        {VT_UINT32, "4294967295", four, Bytes(UINT32_MAX), "4294967295"},
        {VT_UINT32, "99999999999", four, Bytes(UINT32_MAX), "4294967295"},
        {VT_UINT32, "-1", four, Bytes(UINT32_MAX), "4294967295"},
        {VT_UINT16, "65536", "##", "\0\0"s, "0"},
        {VT_UINT16, "65535", "##", "\xFF\xFF", "65535"},
        {VT_UINT8, "511", "#", "\xFF", "255"},
        {VT_BOOL, "true", four, Bytes(0), "0"},
        {VT_BOOL, "-2", four, Bytes(-2), "-2"},
        {VT_ENUM, "-3", four, Bytes(-3), "-3"},
        {VT_STRING, "abc", four, "abc\0"s, "abc", 0, 4},
        {VT_STRING, "", four, "\0###"s, "", 0, 4},
        {VT_STRING, "abcd", four, four, "####", 2, 4},  // no zero byte: the field's end ends it
        {VT_STRING_2, "abcde", four, four, "####", 2, 4},
        {VT_STRING_3, "ab", four, "ab\0#"s, "ab", 0, 4},
        {VT_STRING_4, "\xC3\xA4", four, "\xC3\xA4\0#"s, "\xC3\xA4", 0, 4},
        {VT_STRING_UPPER, "a-z", four, "A-Z\0"s, "A-Z", 0, 4},
        {VT_STRING_UPPER, "abcd", four, four, "####", 2, 4},
        {VT_STRING_UPPER, nullptr, "", "aZ-9\0"s, "AZ-9", 0, 5},
        {VT_IPV4, "10.0.0.1", four, "\x0A\x00\x00\x01"s, "10.0.0.1"},
        {VT_IPV4_2, "10.0.0.256", four, "\xFF\xFF\xFF\xFF", "255.255.255.255"},
        {VT_MAC, "00-1a-2b-3c-4d-5e", four + "##", "\x00\x1a\x2b\x3c\x4d\x5e"s, "00:1A:2B:3C:4D:5E"},
        {VT_TEXT, "abc", four, four, "", 0, 4},
        {VT_TEXT_2, "abc", four, four, "", 0, 4},
        {VT_STRING_PTR, "abc", Bytes(0), Bytes(0), "", 0, 4},  // leads nowhere
        {VT_OPAQUE, "abc", four, four, "", 0, 4},
        {VT_OPAQUE_2, "abc", four, four, "", 0, 4},
        {static_cast<ValueType>(22), "abc", four, four, "", 0, 4},
    };
    for (const auto& c : kCases)
    {
        OneFieldRow row(c.type, c.text != nullptr ? c.before : c.after, c.length);
        EXPECT_EQ(c.text != nullptr ? row.Store(c.text) : c.result, c.result) << "type " << c.type << ", " << c.shown;
        EXPECT_EQ(row.Bytes(), c.after) << "type " << c.type << ", " << c.shown;
        EXPECT_EQ(row.Items(), Row("T", 7) + Column("C", c.shown)) << "type " << c.type;
        EXPECT_EQ(row.Bytes(), c.after) << "showing leaves the row as it is, type " << c.type;
    }
}

namespace
{
// Any bytes that the field may hold and gives back as they are.
void FillField(std::string& row, const ColumnDef& column, std::mt19937& random)
{
    const bool text = column.type == VT_STRING || column.type == VT_STRING_UPPER;
    const uint32_t width = column.type == VT_STRING_PTR ? 0 : FieldWidth(column);  // a pointer leads nowhere
    const uint32_t used = !text ? width : random() % 4 == 0 ? width - 1 : random() % width;
    for (uint32_t i = 0; i < used; ++i)
        row[column.offset + i] = static_cast<char>(text ? '!' + random() % ('Z' - '!') : random());
}

std::string Items(const std::string& row, const TableDef& table)
{
    std::string items(kRowItemsMax, '\0');
    TlvWriter writer(items);
    items.resize(TableRowToTlv(row.data(), table, writer));
    return items;
}
}  // namespace

TEST_F(TableRequests, AnyRowOfAnyTableComesBackFromItsItems)
{
    std::mt19937 random(20240612);
    for (const TableDef& table : kTables)
        for (int number = 0; number < 20; ++number)
        {
            std::string row(table.row_size, '\0');
            for (uint32_t i = 0; i < table.column_count; ++i) FillField(row, table.columns[i], random);
            const std::string items = Items(row, table);
            ASSERT_FALSE(items.empty()) << table.name << ": the row buffer of the catalogue is too small";
            std::string echo(items.size(), '\0');
            TlvWriter echo_writer(echo);
            ASSERT_EQ(TableTlvToRows(items, &echo_writer), 0) << table.name;
            ASSERT_NE(table.pending->first, nullptr) << table.name;
            const std::string decoded(table.pending->first->row, table.row_size);
            EXPECT_EQ(Items(decoded, table), items) << table.name;
            TableRowsRelease();
        }
}
}  // namespace kobd::test
