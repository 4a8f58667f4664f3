// Object get: the current values of the objects a request names, fresh from their accessors.
//   items: object names (text), one an object
//   reply: for each object that could be read its name (tag 1) and value (tag 2)
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "dictionary/name_index.h"
#include "objects/handlers.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ReqObjGet";

// Reads one object into the reply; a zero byte ends the name. An object that cannot be read leaves its log line only;
// false when the reply has no room left.
bool PushObject(Reply& reply, std::string_view name)
{
    const ObjDef* object = NameLookup(name).object;
    if (object == nullptr)
    {
        LOG_ALWAYS(kFunction, "%s-KOB_NOT_FOUND", name.data());
        return true;
    }
    if (object->get == nullptr)
    {
        LOG_ALWAYS(kFunction, "%s-KOB_METHOD_UNAVAILABLE", name.data());
        return true;
    }
    LOG_DEBUG(reply.Debug(), kFunction, "obj->name[%s]", object->name);
    char value[kValueBuffer];
    value[0] = 0;
    if (object->get(value) != kSuccess)
    {
        LOG_ALWAYS(kFunction, "%s-KOB_GET_ERROR", name.data());
        return true;
    }
    return reply.PushText(kTagObjectName, name) && reply.PushText(kTagValue, value);
}
}  // namespace

int ReqObjGet(MessageHeader* request)
{
    Reply reply(request, kFunction);
    if (!HasItems(request)) return reply.SendResult(kInvalidArgument);
    TlvReader reader(Payload(request));
    while (const auto item = reader.Next())
    {
        const auto name = item->Text();  // whatever its tag
        if (!name) return reply.SendResult(kInvalidArgument);
        if (!PushObject(reply, *name)) return reply.SendResult(kBufferLimit);
    }
    return reader.Broken() ? reply.SendResult(kInvalidArgument) : reply.Send();
}
}  // namespace kobd
