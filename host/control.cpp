// The messages of class 9, on the daemon's receive thread: no lock is needed.
#include "host/control.h"

#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "host/commit.h"
#include "host/objects/object_values.h"
#include "host/objects/sources.h"
#include "host/state/folder.h"
#include "host/state/report.h"

namespace kobd::host
{
namespace
{
// The text of the request's first item, when that is an object's name.
std::string NameIn(const MessageHeader* request)
{
    const char* payload = reinterpret_cast<const char*>(request + 1);
    uint16_t head[2] = {};
    if (request->length >= kItemHeader) memcpy(head, payload, kItemHeader);
    if (head[0] != kTagObjectName || request->length < kItemHeader + head[1]) return {};
    return {payload + kItemHeader, strnlen(payload + kItemHeader, head[1])};
}

// The result, and the texts of the answer.
int Answer(const MessageHeader* request, std::vector<std::string>* texts)
{
    if (request->id == kHostState)
    {
        *texts = {StateFolder(), WhyNotSaved()};
        return kSuccess;
    }
    const size_t object = request->id == kHostFactory ? NumberOf(NameIn(request)) : kNoObject;
    if (object == kNoObject) return kNotFound;
    *texts = {ObjectFactoryValue(object)};
    return kSuccess;
}
}  // namespace

void AnswerControl(MessageHeader* request)
try
{
    alignas(MessageHeader) char bytes[kMessageMax];
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    *reply = *request;
    std::vector<std::string> texts;
    char* place = bytes + sizeof *reply;
    place += TlvPushIntToBuf(place, kTagResult, Answer(request, &texts));
    for (const std::string& text : texts)
        if (text.size() < kValueBuffer) place += TlvPushStringToBuf(place, kTagValue, text.c_str());
    reply->length = static_cast<uint16_t>(place - bytes - static_cast<ptrdiff_t>(sizeof *reply));
    MessageSendReply(reply);
}
catch (const std::bad_alloc&)
{
    OutOfMemory("AnswerControl", 0);
}
}  // namespace kobd::host
