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

constexpr size_t CountRows()
{
    size_t rows = 0;
    for (const TableRow& table : kTableRows) rows += table.max_rows;
    return rows;
}
constinit std::array<PendingRow, CountRows() + CountRows() / 3> pending_places;
constinit std::array<PendingRows, kTableCount> pending_rows;

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
#define SHARED(function) function
#define TABLE(name, layout, max_rows, ...) {name, {__VA_ARGS__}},
#define OWN_LIST TABLE
#define SAME_LIST(...)
constexpr NamedOps kOps[] = {
#include "dictionary/catalogue/tables.def"
};

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

// The number of the first row that breaks a rule, counted from 0. NoRow brings it into the compiler's message.
template <typename Rule>
constexpr size_t FirstBreaking(Rule rule)
{
    return static_cast<size_t>(std::find_if_not(kTableRows.begin(), kTableRows.end(), rule) - kTableRows.begin());
}

template <size_t row>
constexpr bool NoRow()
{
    static_assert(row == kTableCount, "the row of this number breaks a rule");
    return true;
}

constexpr bool IsReadable(const TableRow& table) { return table.Has(kNext) && table.max_rows > 0; }
static_assert(NoRow<FirstBreaking(IsReadable)>(), "a table that nobody can read");

// A set stores whole rows, which a get has to read first; only rows that are set can be checked.
constexpr bool HasWhatItNeeds(const TableRow& table)
{
    return (table.Has(kGet) || !table.Has(kSet)) && (table.Has(kSet) || !table.Has(kValidate)) &&
           (table.Has(kAdd) || !table.Has(kDel));
}
static_assert(NoRow<FirstBreaking(HasWhatItNeeds)>(),
              "a set without a get, a check without a set, a del without an add");

constexpr bool HasOwnName(const TableRow& table)
{
    const auto same_name = [&table](const TableRow& other) { return std::string_view(other.name) == table.name; };
    return std::count_if(kTableRows.begin(), kTableRows.end(), same_name) == 1;
}
static_assert(NoRow<FirstBreaking(HasOwnName)>(), "a table has the name of another one");

constexpr bool HasLayoutOfItsList(const TableRow& table)
{
    const auto is_owner = [&table](const TableRow& other)
    { return std::string_view(other.name) == table.list_of && other.layout_name == table.layout_name; };
    return std::any_of(kTableRows.begin(), kTableRows.end(), is_owner);
}
static_assert(NoRow<FirstBreaking(HasLayoutOfItsList)>(), "a table shares a list whose rows are laid out otherwise");

static_assert(2 * (kObjectRows.size() + kTableCount) <= kNameSlots, "the name index needs more places");

// Characters of the longest number of a field.
constexpr size_t NumberTextMost(const FieldForm& form)
{
    switch (form.width)
    {
        case 1: return std::string_view("255").size();
        case 2: return std::string_view(form.kind == FieldKind::kSigned ? "-32768" : "65535").size();
        case 4: return std::string_view(form.kind == FieldKind::kSigned ? "-2147483648" : "4294967295").size();
        default: return std::string_view("18446744073709551615").size();
    }
}

// Characters of the longest text that a field of the row can become. Texts held outside the row
// count nothing.
constexpr size_t FieldTextMost(const ColumnDef& column)
{
    const FieldForm form = FormOf(column);
    switch (form.kind)
    {
        case FieldKind::kSigned:
        case FieldKind::kUnsigned: return NumberTextMost(form);
        case FieldKind::kText:
        case FieldKind::kUpperText: return form.width;  // a field that no zero byte ends
        case FieldKind::kIpv4: return std::string_view("255.255.255.255").size();
        case FieldKind::kMac: return std::string_view("FF:FF:FF:FF:FF:FF").size();
        case FieldKind::kPointer:
        case FieldKind::kNone: break;
    }
    return 0;
}

constexpr size_t TextItem(size_t characters) { return kItemHeader + characters + 1; }

constexpr size_t RowBytes(const TableRow& table) { return table.layout.row_size; }

constexpr size_t RowItemsBytes(const TableRow& table)
{
    size_t bytes = TextItem(std::string_view(table.name).size()) + kIntItem;
    for (const ColumnDef& column : table.layout.columns)
        bytes += TextItem(std::string_view(column.name).size()) + TextItem(FieldTextMost(column));
    return bytes;
}

constexpr size_t LargestOf(size_t (*of_row)(const TableRow& table))
{
    size_t largest = 0;
    for (const TableRow& table : kTableRows) largest = std::max(largest, of_row(table));
    return largest;
}
static_assert(LargestOf(RowBytes) == kRowMax);
static_assert(LargestOf(RowItemsBytes) == kRowItemsMax);

// Of all rows that the tables may hold.
constexpr size_t SumOf(size_t (*of_row)(const TableRow& table))
{
    size_t sum = 0;
    for (const TableRow& table : kTableRows) sum += of_row(table) * table.max_rows;
    return sum;
}
}  // namespace

const std::span<const TableDef> kTables = kRecords;
const std::span<PendingRow> kPendingRows = pending_places;
constexpr size_t kRowsMax = CountRows();
constexpr size_t kRowsBytes = SumOf(RowBytes);
constexpr size_t kRowsItemsBytes = SumOf(RowItemsBytes);
}  // namespace kobd
