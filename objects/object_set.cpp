// Object set: stage all values, check all values, then apply them in request order.
//   items: pairs of object name (tag 1) and new value (tag 2, text)
//   reply: the result alone
#include <array>

#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "dictionary/value_check.h"
#include "objects/handlers.h"
#include "objects/object_set.h"
#include "platform/kob_platform.h"

namespace kobd
{
namespace
{
constexpr size_t kChangedEventBuffer = 128;  // bytes; every object name fits

void NotifyObjectChanged(const ObjDef& object)
{
    std::array<char, kChangedEventBuffer> buffer;
    TlvWriter items(buffer);
    if (!items.Text(kTagObjectName, object.name)) return;
    KobdNotify(kEventObjectChanged, std::span(buffer).first(items.Size()));
}

// Calls the set accessors in request order; stops at the first that fails, earlier ones stay.
int ApplyPairs(std::span<const char> payload, const Reply& reply, const char* function, Announce announce)
{
    TlvReader reader(payload);
    while (const auto name_item = reader.Next())
    {
        const auto value_item = reader.Next();
        const ObjDef* object = NameLookup(name_item->value.data()).object;
        LOG_DEBUG(reply.Debug(), function, "obj->name[%s]", object->name);
        if (const int code = object->set(value_item->value.data())) return code;
        if (announce == Announce::kYes) NotifyObjectChanged(*object);
    }
    return kSuccess;
}

int StageCheckApply(const MessageHeader* request, const Reply& reply, const char* function, Announce announce)
{
    if (!HasItems(request)) return kInvalidArgument;
    const auto payload = Payload(request);
    if (const int code = ObjSetStage(payload)) return code;
    if (const int code = ObjsParameterCheck(payload)) return code;
    if (const int code = ApplyPairs(payload, reply, function, announce)) return code;
    if (announce == Announce::kYes) update_config();
    return kSuccess;
}

int HandleSet(const MessageHeader* request, const char* function, Announce announce)
{
    Reply reply(request, function);
    const int code = StageCheckApply(request, reply, function, announce);
    StagedValuesFree();
    if (announce == Announce::kYes) KobdNotify(kEventSetFinished, {});
    return reply.SendResult(code);
}
}  // namespace

int ObjSetStage(std::span<const char> payload)
{
    TlvReader reader(payload);
    while (const auto name_item = reader.Next())
    {
        const auto name = name_item->Text();
        if (name_item->tag != kTagObjectName || !name) return kInvalidArgument;
        const NamedRecord record = NameLookup(*name);
        if (record.table != nullptr) return kInvalidArgument;
        if (record.object == nullptr) return kNotFound;
        if (record.object->set == nullptr) return kReadonly;
        const auto value_item = reader.Next();
        if (!value_item || value_item->tag != kTagValue) return kInvalidArgument;
        const auto value = value_item->Text();
        if (!value) return kInvalidArgument;
        if (const int code = StageValue(*record.object, *value)) return code;
    }
    return reader.Broken() ? kInvalidArgument : kSuccess;
}

int ReqObjSet(MessageHeader* request) { return HandleSet(request, "ReqObjSet", Announce::kYes); }

int ReqObjSetSilent(MessageHeader* request) { return HandleSet(request, "ReqObjSetSilent", Announce::kNo); }
}  // namespace kobd
