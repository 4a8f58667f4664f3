// How large a table may get and how many columns it has. Both come from the dictionary; no list is
// asked.
//   items: table name (text)
//   reply: the count (integer, tag 2)
#include "daemon/base/reply.h"
#include "tables/handlers.h"
#include "tables/table_request.h"

namespace kobd
{
namespace
{
int AnswerCount(const MessageHeader* request, const char* function, uint32_t TableDef::*count)
{
    Reply reply(request, function);
    TableRequest asked;
    if (const int code = TableRequestRead(request, &asked)) return reply.SendResult(code);
    reply.PushInt(kTagValue, static_cast<int32_t>(asked.table->*count));
    return reply.Send();
}
}  // namespace

int ReqTableMaxRow(MessageHeader* request) { return AnswerCount(request, "ReqTableMaxRow", &TableDef::max_rows); }

int ReqTableElementCount(MessageHeader* request)
{
    return AnswerCount(request, "ReqTableElementCount", &TableDef::column_count);
}
}  // namespace kobd
