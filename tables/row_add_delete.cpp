// Adding and deleting single rows. What a row holds is not touched here; whether the table has
// room is its list's concern, whose code is passed on.
#include "daemon/base/reply.h"
#include "platform/kob_platform.h"
#include "tables/handlers.h"
#include "tables/pending_rows.h"
#include "tables/row_notify.h"
#include "tables/table_request.h"

namespace kobd
{
namespace
{
// The parent path that the request gives for a new row of its table. 0; 2 when there is none or
// none that can be announced.
int ReadParentPath(const TableRequest& asked, const char** path)
{
    const auto text = asked.second ? asked.second->Text() : std::nullopt;
    if (!text || !TableRowNotifyFits(*asked.table, *text)) return kInvalidArgument;
    *path = text->data();
    return kSuccess;
}

int AddRow(const MessageHeader* request, Reply& reply)
{
    TableRequest asked;
    if (const int code = TableRequestRead(request, &asked)) return code;
    const TableDef& table = *asked.table;
    if (table.ops->add == nullptr) return kMethodUnavailable;
    int32_t index = 0;
    if (const int code = table.ops->add(&index)) return code;
    reply.PushInt(kTagRowIndex, index);
    update_config();
    TableRowNotify(kEventRowAdded, table, index);
    return kSuccess;
}

int AddSubRow(const MessageHeader* request, Reply& reply)
{
    TableRequest asked;
    if (const int code = TableRequestRead(request, &asked)) return code;
    const TableDef& table = *asked.table;
    if (table.ops->add == nullptr || table.ops->setPPath == nullptr) return kMethodUnavailable;
    const char* path = nullptr;
    if (const int code = ReadParentPath(asked, &path)) return code;
    int32_t index = 0;
    if (const int code = table.ops->add(&index)) return code;
    table.ops->setPPath(index, path);
    reply.PushInt(kTagRowIndex, index);
    update_config();
    TableRowNotify(kEventSubRowAdded, table, index, path);
    return kSuccess;
}

int DeleteRow(const MessageHeader* request)
{
    TableRequest asked;
    if (const int code = TableRequestRead(request, &asked)) return code;
    const TableDef& table = *asked.table;
    if (table.ops->del == nullptr) return kMethodUnavailable;
    const auto index = asked.second ? asked.second->Int() : std::nullopt;
    if (!index) return kInvalidArgument;
    if (const int code = table.ops->del(*index)) return code;
    update_config();
    TableRowNotify(kEventRowDeleted, table, *index);
    return kSuccess;
}

int Answer(Reply& reply, int code)
{
    TableRowsRelease();
    return code == kSuccess ? reply.Send() : reply.SendResult(code);
}
}  // namespace

// items: table name (text); reply: the new row's index (tag 4)
int ReqTableAdd(MessageHeader* request)
{
    Reply reply(request, "ReqTableAdd");
    return Answer(reply, AddRow(request, reply));
}

// items: table name (text), parent path (text); reply: the new row's index (tag 4)
int REQSubTableAdd(MessageHeader* request)
{
    Reply reply(request, "REQSubTableAdd");
    return Answer(reply, AddSubRow(request, reply));
}

// items: table name (text), row index (integer); reply: the result alone
int ReqTableDel(MessageHeader* request)
{
    Reply reply(request, "ReqTableDel");
    return Answer(reply, DeleteRow(request));
}
}  // namespace kobd
