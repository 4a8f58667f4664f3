// Rows as cells. The bytes that columns cannot say are the difference, bit by bit, between the row and what its own
// cells make, so that nothing depends on knowing why they differ.
#include "host/tables/row_cells.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "dictionary/row_field.h"
#include "host/tables/low_text.h"

namespace kobd::host
{
namespace
{
constexpr const char* kPathField = "@path";

bool IsText(ValueType type)
{
    return type == VT_STRING || type == VT_STRING_2 || type == VT_STRING_3 || type == VT_STRING_4 ||
           type == VT_STRING_UPPER;
}

// Valid until the next call, and as long as the row is unchanged.
std::string_view TextOf(const ColumnDef& column, const char* row)
{
    static std::array<char, kFieldTextMax> buffer;
    return FieldText(row, column, buffer);
}

bool IsZero(const ColumnDef& column, const char* row)
{
    const char* field = row + column.offset;
    return std::all_of(field, field + FieldWidth(column), [](char byte) { return byte == 0; });
}

std::string Difference(const std::vector<char>& row, const std::vector<char>& said)
{
    std::string bytes(row.size(), '\0');
    std::transform(row.begin(), row.end(), said.begin(), bytes.begin(),
                   [](char one, char other) { return static_cast<char>(one ^ other); });
    bytes.replace(0, kRowIndexBytes, kRowIndexBytes, '\0');
    bytes.resize(bytes.find_last_not_of('\0') + 1);
    return bytes;
}

bool IsSameNumber(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && strncasecmp(one.data(), other.data(), one.size()) == 0;
}

bool ReadColumn(const ColumnDef& column, const std::string& value, std::vector<char>* row)
{
    if (value.size() != strlen(value.c_str())) return false;
    char* field = row->data() + column.offset;
    if (column.type == VT_STRING_PTR)
    {
        const uint32_t address = LowText(value);
        memcpy(field, &address, sizeof address);
        return address != 0;
    }
    if (IsText(column.type)) return TableFieldFromString(row->data(), column, value.c_str()) == 0;
    const std::string before(field, FieldWidth(column));
    if (TableFieldFromString(row->data(), column, value.c_str()) == 0 &&
        IsSameNumber(TextOf(column, row->data()), value))
        return true;
    before.copy(field, before.size());
    return false;
}
}  // namespace

void ClearBehindTexts(const RowLayout& layout, char* row)
{
    for (const ColumnDef& column : layout.columns)
    {
        if (!IsText(column.type)) continue;
        char* field = row + column.offset;
        const size_t length = strnlen(field, column.length);
        memset(field + length, 0, column.length - length);
    }
}

Cells CellsOf(const RowLayout& layout, const Row& row)
{
    std::vector<char> said(row.block.size());
    Cells cells = {{kOtherBytes, ""}};
    if (!row.parent_path.empty()) cells.emplace_back(kPathField, row.parent_path);
    for (const ColumnDef& column : layout.columns)
    {
        if (column.alias_of != nullptr || IsZero(column, row.block.data())) continue;
        if (column.type == VT_STRING_PTR)
        {
            memcpy(said.data() + column.offset, row.block.data() + column.offset, FieldWidth(column));
            continue;
        }
        const std::string text(TextOf(column, row.block.data()));
        if (!text.empty() && TableFieldFromString(said.data(), column, text.c_str()) == 0)
            cells.emplace_back(column.name, text);
    }
    cells.front().second = Difference(row.block, said);
    return cells;
}

ReadCell ReadCellInto(const RowLayout& layout, std::string_view field, const std::string& value, Row* row)
{
    if (field == kPathField)
    {
        row->parent_path = value;
        return ReadCell::kRead;
    }
    const ColumnDef* column = FindColumn(layout, field);
    if (column == nullptr) return ReadCell::kUnknown;
    return ReadColumn(*column, value, &row->block) ? ReadCell::kRead : ReadCell::kCannot;
}

bool AddOtherBytes(const std::string& bytes, Row* row)
{
    if (bytes.size() > row->block.size()) return false;
    for (size_t i = kRowIndexBytes; i < bytes.size(); ++i) row->block[i] = static_cast<char>(row->block[i] ^ bytes[i]);
    return true;
}

const ColumnDef* FindColumn(const RowLayout& layout, std::string_view name)
{
    if (name.empty()) return nullptr;
    const auto found =
        std::find_if(layout.columns.begin(), layout.columns.end(),
                     [name](const ColumnDef& column) { return column.name[0] == name[0] && column.name == name; });
    return found == layout.columns.end() ? nullptr : &*found;
}
}  // namespace kobd::host
