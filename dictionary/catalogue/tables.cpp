// The table records, made from the rows of tables.def and the layouts, and the checks of what the
// catalogue must hold.
#include <algorithm>
#include <array>
#include <string_view>

#include "daemon/base/tlv.h"
#include "dictionary/catalogue/table_operations.h"
#include "dictionary/catalogue/view.h"
#include "dictionary/records.h"

namespace kobd
{
namespace
{
constexpr size_t kTableCount = kTableRows.size();
static_assert(kTableCount == 103);
constinit std::array<PendingRowLinks, kTableCount> pending_rows;

// The operations of a list under the name of the table that owns it.
struct NamedOps
{
    std::string_view table;
    TableOps ops;
};

#define ADD(function) .add = function,
#define DEL(function) .del = function,
#define GET(function) .get = function,
#define SET(function) .set = function,
#define PATH(function) .setPPath = function,
#define NEXT(function) .next = function,
#define VALIDATE(function) .validate = function,
#define ALL(stem) ADD(stem##Add) DEL(stem##Del) GET(stem##Get) SET(stem##Set) PATH(stem##SetPPath) NEXT(stem##Next)
#define SHARED(function) function
#define TABLE(name, layout, max_rows, ...) {name, {__VA_ARGS__}},
#define OWN_LIST TABLE
#define SAME_LIST(...)
constexpr NamedOps kOps[] = {
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

constexpr const TableOps* OpsOf(std::string_view table)
{
    return &std::find_if(std::begin(kOps), std::end(kOps), [table](const NamedOps& one) { return one.table == table; })
                ->ops;
}

constexpr std::array<TableDef, kTableCount> MakeRecords()
{
    std::array<TableDef, kTableCount> records{};
    for (size_t i = 0; i < kTableCount; ++i)
    {
        const TableRow& row = kTableRows[i];
        records[i] = {kKindTable,
                      row.name,
                      OpsOf(row.list_of),
                      row.layout.columns.data(),
                      static_cast<uint32_t>(row.layout.columns.size()),
                      row.layout.row_size,
                      &pending_rows[i],
                      row.max_rows};
    }
    return records;
}
constexpr std::array kRecords = MakeRecords();

constexpr int CountOperation(Operation operation)
{
    int count = 0;
    for (const TableRow& table : kTableRows) count += table.Has(operation);
    return count;
}

static_assert(CountOperation(kNext) == 103);
static_assert(CountOperation(kGet) == 86);
static_assert(CountOperation(kSet) == 81);
static_assert(CountOperation(kAdd) == 76);
static_assert(CountOperation(kDel) == 75);
static_assert(CountOperation(kSetParentPath) == 67);
static_assert(CountOperation(kValidate) == 9);

template <typename Test>
constexpr int Count(Test test)
{
    int count = 0;
    for (const TableDef& table : kRecords) count += test(table);
    return count;
}

constexpr int CountMaximum(uint32_t max_rows)
{
    return Count([max_rows](const TableDef& table) { return table.max_rows == max_rows; });
}

static_assert(CountMaximum(64) == 45 && CountMaximum(32) == 15 && CountMaximum(10) == 14 && CountMaximum(1) == 7);
static_assert(CountMaximum(255) == 6 && CountMaximum(4) == 5 && CountMaximum(16) == 3 && CountMaximum(3) == 2);
static_assert(CountMaximum(20) == 2 && CountMaximum(2) == 1 && CountMaximum(8) == 1 && CountMaximum(128) == 1);
static_assert(CountMaximum(150) == 1);

// A table is the first of its layout when no earlier row names the same one. By name: under the
// sanitizers the compiler compares no addresses of columns at compile time.
constexpr bool FirstOfLayout(const TableDef& table)
{
    const auto own = kTableRows.begin() + (&table - kRecords.data());
    return std::none_of(kTableRows.begin(), own,
                        [own](const TableRow& earlier) { return earlier.layout_name == own->layout_name; });
}

constexpr uint32_t CountColumns()
{
    uint32_t count = 0;
    for (const TableDef& table : kRecords)
        if (FirstOfLayout(table)) count += table.column_count;
    return count;
}

static_assert(Count(FirstOfLayout) == 92, "distinct layouts");
static_assert(CountColumns() == 927, "columns of the distinct layouts");

constexpr uint32_t FirstOffset(const TableDef& table)
{
    uint32_t first = table.row_size;
    for (uint32_t i = 0; i < table.column_count; ++i) first = std::min(first, table.columns[i].offset);
    return first;
}

constexpr uint32_t ColumnsEnd(const TableDef& table)
{
    uint32_t end = 0;
    for (uint32_t i = 0; i < table.column_count; ++i)
        end = std::max(end, table.columns[i].offset + FieldWidth(table.columns[i]));
    return end;
}

constexpr uint32_t kSectionNameBytes = 256;
static_assert(Count([](const TableDef& table) { return FirstOffset(table) == kRowIndexBytes; }) == 101);
static_assert(Count([](const TableDef& table) { return table.row_size - ColumnsEnd(table) == kSectionNameBytes; }) ==
                  44,
              "rows that end with a section name");
static_assert(Count([](const TableDef& table) { return table.row_size > kRowMax; }) == 0, "kRowMax holds every row");
static_assert(Count([](const TableDef& table) { return table.row_size == kRowMax; }) == 1, "and no more");

// Characters of the longest text that a field of the row can become. Texts held outside the row
// count nothing.
constexpr size_t FieldTextMost(const ColumnDef& column)
{
    switch (column.type)
    {
        case VT_INT32:
        case VT_BOOL:
        case VT_ENUM: return std::string_view("-2147483648").size();
        case VT_INT16: return std::string_view("-32768").size();
        case VT_INT8:
        case VT_UINT8: return std::string_view("255").size();
        case VT_UINT64: return std::string_view("18446744073709551615").size();
        case VT_UINT32: return std::string_view("4294967295").size();
        case VT_UINT16: return std::string_view("65535").size();
        case VT_IPV4:
        case VT_IPV4_2: return std::string_view("255.255.255.255").size();
        case VT_MAC: return std::string_view("FF:FF:FF:FF:FF:FF").size();
        case VT_STRING_PTR: return 0;
        default: return column.length;  // a field that no zero byte ends
    }
}

constexpr size_t TextItem(size_t characters) { return kItemHeader + characters + 1; }

constexpr size_t RowItemsMost(const TableDef& table)
{
    size_t bytes = TextItem(std::string_view(table.name).size()) + kIntItem;
    for (uint32_t i = 0; i < table.column_count; ++i)
        bytes += TextItem(std::string_view(table.columns[i].name).size()) + TextItem(FieldTextMost(table.columns[i]));
    return bytes;
}
static_assert(Count([](const TableDef& table) { return RowItemsMost(table) > kRowItemsMax; }) == 0, "holds every row");
static_assert(Count([](const TableDef& table) { return RowItemsMost(table) == kRowItemsMax; }) == 1, "and no more");

constexpr size_t CountRows()
{
    size_t rows = 0;
    for (const TableDef& table : kRecords) rows += table.max_rows;
    return rows;
}
static_assert(CountRows() == kRowsMax);

// Bytes of the rows and of the items of all rows that the tables may hold.
constexpr size_t BytesOfRows(size_t (*of_row)(const TableDef& table))
{
    size_t bytes = 0;
    for (const TableDef& table : kRecords) bytes += of_row(table) * table.max_rows;
    return bytes;
}
constexpr int CountAliases()
{
    return Count(
        [](const TableDef& table)
        {
            return FirstOfLayout(table) && std::any_of(table.columns, table.columns + table.column_count,
                                                       [](const ColumnDef& one) { return one.alias_of != nullptr; });
        });
}
static_assert(CountAliases() == 4, "layouts with two names for one field");

constexpr bool NamedAt(size_t position, std::string_view name) { return kRecords[position - 1].name == name; }
static_assert(NamedAt(1, "FlowTable") && NamedAt(7, "OnlineDeviceTable") && NamedAt(22, "PortRedirectTable"));
static_assert(NamedAt(103, "ledsTable"));

constexpr int CountSameNames()
{
    int count = 0;
    for (size_t i = 0; i < kTableCount; ++i)
        for (size_t j = i + 1; j < kTableCount; ++j) count += std::string_view(kRecords[i].name) == kRecords[j].name;
    return count;
}
static_assert(CountSameNames() == 0, "table names are unique");
}  // namespace

const std::span<const TableDef> kTables = kRecords;
constexpr size_t kRowsBytes = BytesOfRows([](const TableDef& table) { return size_t{table.row_size}; });
constexpr size_t kRowsItemsBytes = BytesOfRows(RowItemsMost);
}  // namespace kobd
