// Table get: rows fresh from their lists, in the order in which the request names them.
//   items: pairs of table name (tag 3) and row index (tag 4); a last name alone checks the table
//   reply: for each pair the items of the row
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "tables/handlers.h"
#include "tables/row_codec.h"
#include "tables/table_request.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ReqTableGet";

int FindTable(const TlvItem& item, const Reply& reply, const TableDef** table)
{
    if (const int code = TableOfItem(item, table)) return code;
    LOG_DEBUG(reply.Debug(), kFunction, "table->name[%s]", (*table)->name);
    return (*table)->ops->get != nullptr ? kSuccess : kMethodUnavailable;
}

int PushRow(const TlvItem& item, const TableDef& table, Reply& reply)
{
    const auto index = item.Int();
    if (!index) return kInvalidArgument;
    // Zeros first: a list that fills only part of the block shows nothing of an earlier row.
    alignas(std::max_align_t) char row[kRowMax] = {};
    if (const int code = table.ops->get(*index, row)) return code;
    return TableRowToTlv(row, table, reply.Items()) != 0 ? kSuccess : kBufferLimit;
}

int PushRows(const MessageHeader* request, Reply& reply)
{
    if (!HasItems(request)) return kInvalidArgument;
    TlvReader reader(Payload(request));
    const TableDef* table = nullptr;
    Tag expected = kTagTableName;
    while (const auto item = reader.Next())
    {
        if (item->tag != expected) return kInvalidArgument;
        const bool names = expected == kTagTableName;
        if (const int code = names ? FindTable(*item, reply, &table) : PushRow(*item, *table, reply)) return code;
        expected = names ? kTagRowIndex : kTagTableName;
    }
    return reader.Broken() ? kInvalidArgument : kSuccess;
}
}  // namespace

int ReqTableGet(MessageHeader* request)
{
    Reply reply(request, kFunction);
    const int code = PushRows(request, reply);
    return code == kSuccess ? reply.Send() : reply.SendResult(code);
}
}  // namespace kobd
