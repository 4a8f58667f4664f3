// The handler table: message name, code and handler, in the order of the bus registration.
#include "daemon/handler_table.h"

#include "daemon/base/messages.h"
#include "events/handlers.h"
#include "objects/handlers.h"
#include "tables/handlers.h"

namespace kobd
{
namespace
{
constexpr MsgHandler Request(const char* name, RequestId id, int (*handler)(MessageHeader*))
{
    return {name, MessageCode(id, kClassRequest), handler};
}

constexpr MsgHandler Event(const char* name, NetworkEventId id, int (*handler)(MessageHeader*))
{
    return {name, MessageCode(id, kClassEvent), handler};
}
}  // namespace

const std::array<MsgHandler, 24> kHandlers = {{
    Request("ReqObjSet", kReqObjSet, ReqObjSet),
    Request("ReqObjGet", kReqObjGet, ReqObjGet),
    Request("ReqObjSetSilent", kReqObjSetSilent, ReqObjSetSilent),
    Request("ReqUpdate", kReqUpdate, ReqUpdate),
    Request("ReqTableMaxRow", kReqTableMaxRow, ReqTableMaxRow),
    Request("ReqTableElementCount", kReqTableElementCount, ReqTableElementCount),
    Request("ReqTableAdd", kReqTableAdd, ReqTableAdd),
    Request("ReqTableDel", kReqTableDel, ReqTableDel),
    Request("ReqTableGet", kReqTableGet, ReqTableGet),
    Request("ReqTableSet", kReqTableSet, ReqTableSet),
    Request("ReqTableSetSilent", kReqTableSetSilent, ReqTableSetSilent),
    Request("ReqTableDump", kReqTableDump, ReqTableDump),
    Request("REQSubTableAdd", kREQSubTableAdd, REQSubTableAdd),
    Event("EvtApnChange", kEvtApnChange, EvtApnChange),
    Event("EvtApnIPChange", kEvtApnIPChange, EvtApnIPChange),
    Event("EvtNetworkUp", kEvtNetworkUp, EvtNetworkUp),
    Event("EvtNetworkDown", kEvtNetworkDown, EvtNetworkDown),
    Event("EvtPCscfIPChange", kEvtPCscfIPChange, EvtPCscfIPChange),
    Event("EvtEthernetUp", kEvtEthernetUp, EvtEthernetUp),
    Event("EvtEthernetDown", kEvtEthernetDown, EvtEthernetDown),
    Event("EvtEthernetIPAdd", kEvtEthernetIPAdd, EvtEthernetIPAdd),
    Event("EvtEthernetIPDel", kEvtEthernetIPDel, EvtEthernetIPDel),
    Request("ReqShow", kReqShow, ReqShow),
    {nullptr, 0, nullptr},
}};
}  // namespace kobd
