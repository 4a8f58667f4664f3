// Rows as items.
#include "tables/row_codec.h"

#include <array>
#include <cstring>

#include "dictionary/row_field.h"

namespace kobd
{
namespace
{
constexpr size_t kItemTextMax = UINT16_MAX - 1;  // bytes; the length counts the zero byte too

bool PushRow(const void* row, const TableDef& table, TlvWriter& out)
{
    if (!out.Text(kTagTableName, table.name) || !out.Int(kTagRowIndex, RowIndex(row))) return false;
    std::array<char, kFieldTextMax> buffer;
    for (const ColumnDef& column : std::span(table.columns, table.column_count))
    {
        const std::string_view text = FieldText(row, column, buffer);
        if (!out.Text(kTagColumnName, column.name) || !out.Text(kTagValue, text.substr(0, kItemTextMax))) return false;
    }
    return true;
}
}  // namespace

size_t TableRowToTlv(const void* row, const TableDef& table, TlvWriter& out)
{
    const size_t before = out.Size();
    if (!PushRow(row, table, out)) out.Truncate(before);
    return out.Size() - before;
}

const ColumnDef* ColumnOf(const TableDef& table, std::string_view name)
{
    for (const ColumnDef& column : std::span(table.columns, table.column_count))
        if (name == column.name) return &column;
    return nullptr;
}
}  // namespace kobd
