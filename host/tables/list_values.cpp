// Objects that tell something of a list, read from the list itself so that they cannot disagree.
#include "host/tables/list_values.h"

#include "host/tables/lists.h"

namespace kobd::host
{
namespace
{
#define COUNT(object, table) {object, table, false},
#define INDEXES(object, table) {object, table, true},
constexpr ListValue kListValues[] = {
#include "host/factory/list_values.def"
};
#undef COUNT
#undef INDEXES
}  // namespace

std::span<const ListValue> ListValues() { return kListValues; }

std::string ListValueText(const ListValue& value)
{
    const List* list = FindList(value.table);
    if (list == nullptr) return {};
    const auto& rows = list->rows.Rows();
    if (!value.indexes) return std::to_string(rows.size());
    std::string text;
    for (const Row& row : rows) text += (text.empty() ? "" : ",") + std::to_string(IndexOf(row));
    return text;
}
}  // namespace kobd::host
