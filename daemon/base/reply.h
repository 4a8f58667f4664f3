// The frame in which every request handler answers, and the notifications the daemon sends.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "platform/message.h"

namespace kobd
{
static_assert(sizeof(MessageHeader) == kHeaderBytes);

// The items of a message that the bus has delivered; its length has been checked against what was
// received.
inline std::span<const char> Payload(const MessageHeader* message)
{
    return {reinterpret_cast<const char*>(message + 1), message->length};
}

// True when the request carries at least one item: a lone item header is none.
inline bool HasItems(const MessageHeader* request) { return request->length > kItemHeader; }

// The number of the request in hand: what lasts for one request compares it. Each reply begins the next
// request; so does NextRequest, for calls that belong to none.
uint32_t RequestNumber();
void NextRequest();

// One reply. It is built in the process's only reply buffer, so that one exists at a time. A handler
// creates it first, pushes items, and ends with Send or SendResult.
class Reply
{
public:
    // function: the handler's name for the log, kept by reference.
    Reply(const MessageHeader* request, const char* function);

    // Whether the debug switch was on when the request arrived; asked once per message.
    bool Debug() const { return debug_; }

    // Append an item. False when it does not fit; the reply then ends with kBufferLimit.
    bool PushText(uint16_t tag, std::string_view text);
    bool PushInt(uint16_t tag, int32_t value);

    // The writer of the reply's items, for a function that writes several of them. A handler whose items do
    // not fit answers kBufferLimit.
    TlvWriter& Items() { return items_; }

    // Sends result 0 with the items pushed, or kBufferLimit alone when one of them did not fit.
    // The send's error if there is one, else the result code.
    int Send();

    // Sends the result `code` without any of the items pushed: every refusal, and the success of a set.
    // As Send.
    int SendResult(int code);

private:
    int Finish(int code, size_t payload_length);

    const char* function_;
    TlvWriter items_;
    bool debug_;
    bool full_ = false;
};

// Whether a set request announces its changes and commits them.
enum class Announce
{
    kYes,
    kNo,
};

// Sends event `id` with `payload` to the notification module. A payload over kNotifyPayloadMax bytes is
// not sent; neither is one for which the module's queue has no room in time. Each leaves a log line.
void KobdNotify(uint16_t id, std::span<const char> payload);
}  // namespace kobd
