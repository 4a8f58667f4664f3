// The client that asks again and again.
#include "bench/connection.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "daemon/base/tlv.h"

namespace kobd::bench
{
namespace
{
constexpr int kTimeoutMs = 20000;
constexpr size_t kItemsStart = sizeof(MessageHeader) + kIntItem;
}  // namespace

Connection::Connection()
{
    if (BusClientOpen(&bus_) != 0) abort();
}

Connection::~Connection() { BusClientClose(&bus_); }

size_t Connection::Ask(uint16_t id, const std::string& items)
{
    auto* request = reinterpret_cast<MessageHeader*>(request_);
    auto* reply = reinterpret_cast<MessageHeader*>(reply_);
    *request = {};
    request->destination = kModuleKobd;
    request->message_class = kClassRequest;
    request->id = id;
    request->length = static_cast<uint16_t>(items.size());
    memcpy(request + 1, items.data(), items.size());
    const int code = BusClientCall(&bus_, request, reply, kTimeoutMs);
    int32_t result = -1;
    if (code == 0) memcpy(&result, reply_ + sizeof(MessageHeader) + kItemHeader, sizeof result);
    if (code == 0 && result == 0) return sizeof(MessageHeader) + reply->length;
    fprintf(stderr, "request %d: bus %d, result %d\n", id, code, result);
    abort();
}

std::string Connection::Items() const
{
    const auto* reply = reinterpret_cast<const MessageHeader*>(reply_);
    return {reply_ + kItemsStart, reply->length - kIntItem};
}
}  // namespace kobd::bench
