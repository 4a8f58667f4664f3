// Watches and taps: messages that nobody asked for, taken one by one or by a feed.
#include <algorithm>
#include <atomic>
#include <new>

#include "client/library/feed.h"
#include "daemon/base/result.h"

using namespace kobd;
using namespace kobd::client;

namespace
{
constexpr int kStopLookMs = 50;   // how long a stopped watch may take to notice
constexpr int kFeedLookMs = 200;  // how long closing a feed may wait for its thread
}  // namespace

struct kobd_watch
{
    BusClient bus;
    Message message;
    kobd_bytes left = {};  // of the message
    std::atomic<bool> stopped = false;
    std::atomic<Feed*> feed = nullptr;  // once there is a descriptor
};

struct kobd_tap
{
    BusTap* bus = nullptr;
    BusTapped tapped = {};
    Message message;
    Feed* feed = nullptr;  // once there is a descriptor
};

int kobd_watch_open(kobd_watch** watch, uint32_t module)
{
    *watch = new (std::nothrow) kobd_watch;
    if (*watch == nullptr) return kMallocFailed;
    const int code = BusClientJoin(&(*watch)->bus, module);
    if (code == kSuccess) return kSuccess;
    delete *watch;
    *watch = nullptr;
    return code;
}

void kobd_watch_close(kobd_watch* watch)
{
    if (watch == nullptr) return;
    Feed::Close(watch->feed);  // before its queue goes
    BusClientClose(&watch->bus);
    delete watch;
}

namespace
{
int TakeFromFeed(kobd_watch* watch, int milliseconds)
{
    const auto taken = watch->feed.load()->Next(milliseconds);
    if (taken->code == kSuccess) watch->message = taken->message;
    return taken->code;
}

// Looks whether it was stopped every now and then.
int TakeFromQueue(kobd_watch* watch, int milliseconds)
{
    for (int left = milliseconds; !watch->stopped; left -= kStopLookMs)
    {
        const bool endless = milliseconds < 0;
        const int code = BusClientReceive(&watch->bus, watch->message.Header(),
                                          endless ? kStopLookMs : std::clamp(left, 0, kStopLookMs));
        if (code == kReplyTimeout && (endless || left > kStopLookMs)) continue;
        return code;
    }
    return kNotRunning;
}
}  // namespace

int kobd_watch_next(kobd_watch* watch, int milliseconds, uint16_t* id)
{
    const int code = watch->feed != nullptr ? TakeFromFeed(watch, milliseconds) : TakeFromQueue(watch, milliseconds);
    if (code != kSuccess) return code;
    watch->left = watch->message.Payload();
    *id = watch->message.Header()->id;
    return kSuccess;
}

int kobd_watch_item(kobd_watch* watch, kobd_item* item) { return kobd_bytes_next(&watch->left, item) == 1 ? 1 : 0; }

kobd_bytes kobd_watch_payload(const kobd_watch* watch) { return watch->message.Payload(); }

int kobd_watch_descriptor(kobd_watch* watch)
{
    if (watch->feed != nullptr) return watch->feed.load()->Descriptor();
    const auto take = [watch](Taken* taken)
    { taken->code = BusClientReceive(&watch->bus, taken->message.Header(), kFeedLookMs); };
    watch->feed = Feed::Start(take);
    if (watch->feed == nullptr) return -1;
    if (watch->stopped) watch->feed.load()->Stop();
    return watch->feed.load()->Descriptor();
}

void kobd_watch_stop(kobd_watch* watch)
{
    watch->stopped = true;
    if (Feed* feed = watch->feed) feed->Stop();
}

int kobd_tap_open(kobd_client* client, kobd_tap** tap)
{
    client->explained.reset();
    client->answered = false;
    client->waited_ms = client->timeout_ms.value_or(kDefaultTimeoutMs);
    *tap = new (std::nothrow) kobd_tap;
    if (*tap == nullptr) return Ended(client, kMallocFailed);
    const int code = BusTapOpen(&client->bus, &(*tap)->bus, client->waited_ms);
    if (code != kSuccess)
    {
        delete *tap;
        *tap = nullptr;
    }
    return Ended(client, code);
}

void kobd_tap_close(kobd_tap* tap)
{
    if (tap == nullptr) return;
    Feed::Close(tap->feed);  // before its memory goes
    BusTapClose(tap->bus);
    delete tap;
}

int kobd_tap_descriptor(kobd_tap* tap)
{
    if (tap->feed != nullptr) return tap->feed->Descriptor();
    const auto take = [tap](Taken* taken)
    { taken->code = BusTapNext(tap->bus, &taken->tapped, taken->message.Header(), &taken->missed, kFeedLookMs); };
    tap->feed = Feed::Start(take);
    return tap->feed != nullptr ? tap->feed->Descriptor() : -1;
}

namespace
{
int Take(kobd_tap* tap, int milliseconds, uint32_t* missed)
{
    if (tap->feed == nullptr) return BusTapNext(tap->bus, &tap->tapped, tap->message.Header(), missed, milliseconds);
    const auto taken = tap->feed->Next(std::max(milliseconds, 0));
    if (taken->code != kSuccess) return taken->code;
    tap->message = taken->message;
    tap->tapped = taken->tapped;
    *missed = taken->missed;
    return kSuccess;
}
}  // namespace

int kobd_tap_next(kobd_tap* tap, int milliseconds, kobd_tapped* tapped)
{
    uint32_t missed = 0;
    const MessageHeader* header = tap->message.Header();
    if (const int code = Take(tap, milliseconds, &missed)) return code;
    *tapped = {.kind = tap->tapped.kind,
               .missed = missed,
               .time_us = tap->tapped.time_us,
               .took_ns = tap->tapped.took_ns,
               .process = tap->tapped.process,
               .program = tap->tapped.program,
               .module = header->destination,
               .message_class = header->message_class,
               .id = header->id,
               .payload = tap->message.Payload(),
               .message = {header, sizeof *header + header->length}};
    return kSuccess;
}
