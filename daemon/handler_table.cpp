// The handler table: message name, code and handler, in the order of the bus registration.
#include "daemon/handler_table.h"

#include "events/handlers.h"
#include "objects/handlers.h"
#include "tables/handlers.h"

namespace kobd
{
namespace
{
constexpr uint32_t Code(uint16_t id, MessageClass message_class) { return (uint32_t{id} << 16) | message_class; }

constexpr MsgHandler Request(const char* name, uint16_t id, int (*handler)(MessageHeader*))
{
    return {name, Code(id, kClassRequest), handler};
}

constexpr MsgHandler Event(const char* name, uint16_t id, int (*handler)(MessageHeader*))
{
    return {name, Code(id, kClassEvent), handler};
}
}  // namespace

const std::array<MsgHandler, 24> kHandlers = {{
    Request("ReqObjSet", 1, ReqObjSet),
    Request("ReqObjGet", 2, ReqObjGet),
    Request("ReqObjSetSilent", 3, ReqObjSetSilent),
    Request("ReqUpdate", 4, ReqUpdate),
    Request("ReqTableMaxRow", 5, ReqTableMaxRow),
    Request("ReqTableElementCount", 6, ReqTableElementCount),
    Request("ReqTableAdd", 7, ReqTableAdd),
    Request("ReqTableDel", 8, ReqTableDel),
    Request("ReqTableGet", 9, ReqTableGet),
    Request("ReqTableSet", 10, ReqTableSet),
    Request("ReqTableSetSilent", 11, ReqTableSetSilent),
    Request("ReqTableDump", 12, ReqTableDump),
    Request("REQSubTableAdd", 15, REQSubTableAdd),
#define EVENT(handler, id) Event(#handler, id, handler),
#include "events/events.def"
#undef EVENT
    Request("ReqShow", 13, ReqShow),
    {nullptr, 0, nullptr},
}};
}  // namespace kobd
