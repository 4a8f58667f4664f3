// The messages of class 9, on the daemon's receive thread: no lock is needed.
#include "host/control.h"

#include <new>
#include <span>
#include <string>
#include <string_view>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "dictionary/catalogue/view.h"
#include "host/bus/bus.h"
#include "host/commit.h"
#include "host/objects/object_values.h"
#include "host/objects/sources.h"
#include "host/sim/changes_made.h"
#include "host/sim_messages.h"
#include "host/state/folder.h"
#include "host/state/report.h"

namespace kobd::host
{
namespace
{
// The text of the request's first item, when that is an object's name.
std::string_view NameIn(const MessageHeader* request)
{
    const auto item = TlvReader({reinterpret_cast<const char*>(request + 1), request->length}).Next();
    return item && item->tag == kTagObjectName ? item->Text().value_or("") : "";
}

// A text that is too long is left out.
void Add(const std::string& text, TlvWriter* answer)
{
    if (text.size() < kValueBuffer) static_cast<void>(answer->Text(kTagValue, text));
}

// As many names as fit.
int AnswerState(TlvWriter* answer)
{
    Add(StateFolder(), answer);
    Add(WhyNotSaved(), answer);
    for (const std::string& name : NotSaved())
        if (!answer->Text(NumberOf(name) != kNoObject ? kTagObjectName : kTagTableName, name)) break;
    return kSuccess;
}

int AnswerFailed(TlvWriter* answer)
{
    const RequestInHand asking = BusRequest();
    const FailedChange* failed = LastFailedChange(asking.sender, asking.connection);
    if (failed == nullptr) return kNotFound;
    const bool row = failed->target.kind == SimKind::kTable;
    const bool fits = row ? answer->Text(kTagTableName, kTableRows[failed->target.number].name) &&
                                answer->Int(kTagRowIndex, failed->index)
                          : answer->Text(kTagObjectName, Sources()[failed->target.number].object);
    return fits && answer->Int(kTagValue, failed->changed) ? kSuccess : kBufferLimit;
}

// The result; `answer` gets the items behind it.
int Answer(const MessageHeader* request, TlvWriter* answer)
{
    if (request->id == kHostState) return AnswerState(answer);
    if (request->id == kHostFailed) return AnswerFailed(answer);
    if (request->id != kHostFactory) return AnswerSimulator(request, answer);
    const size_t object = NumberOf(NameIn(request));
    if (object == kNoObject) return kNotFound;
    const size_t shown = AccessorOf(object, &ObjectAccessors::getter);  // LANIP is read as networkLanSettingIp
    if (shown != kNoObject) Add(ObjectFactoryValue(shown), answer);
    return kSuccess;
}
}  // namespace

void AnswerControl(MessageHeader* request)
try
{
    alignas(MessageHeader) char bytes[kMessageMax];
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    *reply = *request;
    char* result = bytes + sizeof *reply;
    TlvWriter answer(std::span<char>(bytes).subspan(sizeof *reply + kIntItem));
    const int code = Answer(request, &answer);
    TlvPushIntToBuf(result, kTagResult, code);
    reply->length = static_cast<uint16_t>(kIntItem + (code == kSuccess ? answer.Size() : 0));
    MessageSendReply(reply);
}
catch (const std::bad_alloc&)
{
    OutOfMemory("AnswerControl", 0);
}
}  // namespace kobd::host
