// Rows and change files for tests of the table requests.
#include "tests/tables/table_rows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>

#include "dictionary/name_index.h"
#include "dictionary/row_field.h"
#include "tables/row_codec.h"

namespace kobd::test
{
std::string RowBytes(const TableDef& table, int32_t index, const Fields& fields)
{
    std::string row(table.row_size, '\0');
    memcpy(row.data(), &index, sizeof index);
    for (const auto& [name, text] : fields)
    {
        const ColumnDef* column = ColumnOf(table, name);
        EXPECT_TRUE(column != nullptr && TableFieldFromString(row.data(), *column, text.c_str()) == 0) << name;
    }
    return row;
}

std::string FieldOf(const std::string& row, const ColumnDef& column)
{
    std::array<char, kFieldTextMax> buffer;
    return std::string(FieldText(row.data(), column, buffer));
}

const TableDef& Table(std::string_view name) { return *NameLookup(name).table; }

void PutRow(std::string_view table, int32_t index, const Fields& fields)
{
    platform.rows[std::string(table)][index] = RowBytes(Table(table), index, fields);
}

std::string Field(std::string_view table, int32_t index, std::string_view column)
{
    const auto& rows = platform.rows[std::string(table)];
    const auto row = rows.find(index);
    const ColumnDef* definition = ColumnOf(Table(table), column);
    if (definition == nullptr) return "no column";
    return row != rows.end() ? FieldOf(row->second, *definition) : "no row";
}

std::string ItemsOf(const TableDef& table, const std::string& row)
{
    std::string items = Row(table.name, RowIndex(row.data()));
    for (uint32_t i = 0; i < table.column_count; ++i)
        items += Column(table.columns[i].name, FieldOf(row, table.columns[i]));
    return items;
}

std::string Changes(std::string_view bytes)
{
    std::ofstream(kChangeFile, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return TextItem(kTagValue, kChangeFile);
}

Lines CallsButReads()
{
    Lines calls;
    for (const std::string& call : platform.calls)
        if (!call.starts_with("get ") && !call.starts_with("next ")) calls.push_back(call);
    return calls;
}

bool NothingLeft()
{
    const auto pending = [](const TableDef& table) { return table.pending->first != nullptr; };
    const auto staged = [](const ObjDef& object) { return object.staged->text != nullptr; };
    return std::none_of(kTables.begin(), kTables.end(), pending) &&
           std::none_of(kObjects.begin(), kObjects.end(), staged);
}

void TableRequests::SetUp()
{
    SKIP_WITHOUT_NAMESPACES();
    NameIndexBuild();
    ResetPlatform();
}
}  // namespace kobd::test
