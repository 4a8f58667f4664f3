// Notifications of rows that came or went.
#include "tables/row_notify.h"

#include <array>

#include "daemon/base/reply.h"

namespace kobd
{
namespace
{
bool PushItems(TlvWriter& items, const TableDef& table, int32_t index, const char* parent_path)
{
    return items.Text(kTagTableName, table.name) && items.Int(kTagRowIndex, index) &&
           (parent_path == nullptr || items.Text(kTagParentPath, parent_path));
}
}  // namespace

void TableRowNotify(uint16_t id, const TableDef& table, int32_t index, const char* parent_path)
{
    std::array<char, kNotifyPayloadMax> payload;
    TlvWriter items(payload);
    if (PushItems(items, table, index, parent_path)) KobdNotify(id, std::span(payload).first(items.Size()));
}

bool TableRowNotifyFits(const TableDef& table, std::string_view parent_path)
{
    std::array<char, kNotifyPayloadMax> payload;
    TlvWriter items(payload);
    return PushItems(items, table, 0, parent_path.data());
}
}  // namespace kobd
