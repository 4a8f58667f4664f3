// Rows as lines of text. The bytes that columns cannot say are found by comparing the row with what
// its own lines make, so that nothing depends on knowing why they differ.
#include "host/tables/row_text.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "dictionary/row_field.h"
#include "host/tables/low_text.h"

namespace kobd::host
{
namespace
{
constexpr char kNoColumn = '@';
constexpr const char* kPathName = "@path";
constexpr std::string_view kDigits = "0123456789abcdef";

bool IsText(ValueType type)
{
    return type == VT_STRING || type == VT_STRING_2 || type == VT_STRING_3 || type == VT_STRING_4 ||
           type == VT_STRING_UPPER;
}

std::string TextOf(const ColumnDef& column, const char* row)
{
    static std::array<char, kFieldTextMax> buffer;
    return std::string(FieldText(row, column, buffer));
}

bool IsZero(const ColumnDef& column, const char* row)
{
    const char* field = row + column.offset;
    return std::all_of(field, field + FieldWidth(column), [](char byte) { return byte == 0; });
}

std::string Hexadecimal(const char* bytes, size_t count)
{
    std::string text;
    for (size_t i = 0; i < count; ++i)
    {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += {kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return text;
}

bool ReadHexadecimal(std::string_view text, std::string* bytes)
{
    if (text.empty() || text.size() % 2 != 0) return false;
    for (size_t i = 0; i < text.size(); i += 2)
    {
        const size_t high = kDigits.find(text[i]);
        const size_t low = kDigits.find(text[i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos) return false;
        *bytes += static_cast<char>(high << 4 | low);
    }
    return true;
}

// The runs of bytes in which `row` differs from `said`.
void AppendOtherBytes(const std::vector<char>& row, const std::vector<char>& said, Settings* lines)
{
    for (size_t from = kRowIndexBytes; from < row.size(); ++from)
    {
        size_t end = from;
        while (end < row.size() && row[end] != said[end]) ++end;
        if (end == from) continue;
        lines->emplace_back(kNoColumn + std::to_string(from), Hexadecimal(&row[from], end - from));
        from = end;
    }
}

bool ReadOtherBytes(std::string_view offset, std::string_view text, std::vector<char>* row)
{
    size_t from = 0;
    const auto read = std::from_chars(offset.data(), offset.data() + offset.size(), from);
    std::string bytes;
    if (read.ec != std::errc() || read.ptr != offset.data() + offset.size()) return false;
    if (!ReadHexadecimal(text, &bytes) || from < kRowIndexBytes) return false;
    if (from > row->size() || bytes.size() > row->size() - from) return false;
    memcpy(row->data() + from, bytes.data(), bytes.size());
    return true;
}

bool ReadColumn(const ColumnDef& column, const std::string& value, std::vector<char>* row)
{
    if (value.size() != strlen(value.c_str())) return false;
    if (column.type == VT_STRING_PTR)
    {
        const uint32_t address = LowText(value);
        memcpy(row->data() + column.offset, &address, sizeof address);
        return address != 0;
    }
    const std::vector<char> before = *row;
    if (TableFieldFromString(row->data(), column, value.c_str()) == 0 &&
        (IsText(column.type) || strcasecmp(TextOf(column, row->data()).c_str(), value.c_str()) == 0))
        return true;
    *row = before;
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

void AppendRowLines(const RowLayout& layout, const Row& row, Settings* lines)
{
    std::vector<char> said(row.block.size());
    if (!row.parent_path.empty()) lines->emplace_back(kPathName, row.parent_path);
    for (const ColumnDef& column : layout.columns)
    {
        if (column.alias_of != nullptr || IsZero(column, row.block.data())) continue;
        if (column.type == VT_STRING_PTR)
        {
            memcpy(said.data() + column.offset, row.block.data() + column.offset, FieldWidth(column));
            continue;
        }
        const std::string text = TextOf(column, row.block.data());
        if (!text.empty() && TableFieldFromString(said.data(), column, text.c_str()) == 0)
            lines->emplace_back(column.name, text);
    }
    AppendOtherBytes(row.block, said, lines);
    lines->insert(lines->end(), row.unknown.begin(), row.unknown.end());
}

bool ReadRowLine(const RowLayout& layout, const std::string& name, const std::string& value, Row* row)
{
    if (const ColumnDef* column = FindColumn(layout, name)) return ReadColumn(*column, value, &row->block);
    if (name == kPathName)
        row->parent_path = value;
    else if (name.size() > 1 && name[0] == kNoColumn && name[1] >= '0' && name[1] <= '9')
        return ReadOtherBytes(std::string_view(name).substr(1), value, &row->block);
    else
        row->unknown.emplace_back(name, value);
    return true;
}

const ColumnDef* FindColumn(const RowLayout& layout, std::string_view name)
{
    const auto found = std::find_if(layout.columns.begin(), layout.columns.end(),
                                    [name](const ColumnDef& column) { return column.name == name; });
    return found == layout.columns.end() ? nullptr : &*found;
}
}  // namespace kobd::host
