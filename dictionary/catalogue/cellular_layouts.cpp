// Holds the cellular lists and the catalogue to one row layout: the lists write where the columns
// say, and their functions have the types that the table records expect.
#include <algorithm>
#include <string_view>

#include "cellular/cellular_lists.h"
#include "cellular/family.h"
#include "dictionary/catalogue/accessors.h"
#include "dictionary/catalogue/columns/cellular.h"
#include "dictionary/catalogue/table_operations.h"

namespace kobd
{
namespace
{
// Every text column is a field and every field a text column, at the same place; the index of the
// parent comes first, the section name stands behind the last field.
constexpr bool Agree(const RowLayout& layout, const CellularFamily& family)
{
    const auto columns = layout.columns.subspan(1);
    const auto same = [](const ColumnDef& column, const CellularField& field)
    {
        return std::string_view(column.name) == field.name && column.offset == field.offset &&
               column.type == VT_STRING && column.length == kCellularText;
    };
    const auto before_name = [&family](const CellularField& field)
    { return field.offset + kCellularText <= SectionNameOffset(family); };
    return std::equal(columns.begin(), columns.end(), family.fields.begin(), family.fields.end(), same) &&
           layout.row_size == family.row_size && std::all_of(family.fields.begin(), family.fields.end(), before_name);
}
static_assert(Agree(kCellularInterface, kInterfaceFamily));
static_assert(Agree(kCellularUSIM, kUsimFamily));
static_assert(Agree(kCellularStats, kStatsFamily));
static_assert(Agree(kCellularaccesspoint, kAccesspointFamily));
}  // namespace
}  // namespace kobd
