// The reply frame and the notifications.
#include "daemon/base/reply.h"

#include <cstring>

#include "daemon/base/log.h"

namespace kobd
{
namespace
{
alignas(MessageHeader) char reply_buffer[kMessageMax];

uint32_t request_number = 0;

// Where the 32-bit result lies: first item of the payload, behind its item header.
constexpr size_t kResultValue = sizeof(MessageHeader) + kItemHeader;
}  // namespace

uint32_t RequestNumber() { return request_number; }

void NextRequest() { ++request_number; }

Reply::Reply(const MessageHeader* request, const char* function)
    : function_(function), items_(std::span(reply_buffer).subspan(sizeof(MessageHeader))), debug_(kobd_log_level() > 0)
{
    NextRequest();
    memcpy(reply_buffer, request, sizeof(MessageHeader));
    PushInt(kTagResult, kInvalidArgument);
}

bool Reply::PushText(uint16_t tag, std::string_view text)
{
    if (!full_) full_ = !items_.Text(tag, text);
    return !full_;
}

bool Reply::PushInt(uint16_t tag, int32_t value)
{
    if (!full_) full_ = !items_.Int(tag, value);
    return !full_;
}

int Reply::Send() { return full_ ? Finish(kBufferLimit, kIntItem) : Finish(kSuccess, items_.Size()); }

int Reply::SendResult(int code) { return Finish(code, kIntItem); }

int Reply::Finish(int code, size_t payload_length)
{
    const int32_t result = code;
    memcpy(reply_buffer + kResultValue, &result, sizeof result);
    auto* header = reinterpret_cast<MessageHeader*>(reply_buffer);
    header->length = static_cast<uint16_t>(payload_length);
    LOG_DEBUG(debug_, function_, "MessageSendReply");
    const int sent = MessageSendReply(header);
    return sent != 0 ? sent : code;
}

void KobdNotify(uint16_t id, std::span<const char> payload)
{
    alignas(MessageHeader) char message[sizeof(MessageHeader) + kNotifyPayloadMax] = {};
    if (payload.size() > kNotifyPayloadMax)
    {
        LOG_ALWAYS("KobdNotify", "notification %d of %zu bytes refused, at most %zu fit", id, payload.size(),
                   kNotifyPayloadMax);
        return;
    }
    auto* header = reinterpret_cast<MessageHeader*>(message);
    header->destination = kModuleNotify;
    header->message_class = kClassEvent;
    header->id = id;
    header->length = static_cast<uint16_t>(payload.size());
    if (!payload.empty()) memcpy(header + 1, payload.data(), payload.size());
    if (MessageSend(header) == kSendFailed)
        LOG_ALWAYS("KobdNotify", "notification %d dropped, the queue of module 0x%08X is full", id, kModuleNotify);
}
}  // namespace kobd

int kobd_send_message(...) { return 0; }
