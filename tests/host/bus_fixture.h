// A daemon's side of the bus with three handlers, and a client, in an IPC namespace of the test program's own.
#pragma once

#include <gtest/gtest.h>
#include <sys/msg.h>

#include <atomic>
#include <cstring>
#include <limits>
#include <string>

#include "host/bus/bus_queues.h"
#include "platform/bus_client.h"
#include "tests/joined.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

inline constexpr uint16_t kEcho = 1;
inline constexpr uint16_t kMute = 2;      // answers nothing
inline constexpr uint16_t kAnnounce = 3;  // sends ten notifications, then answers
inline constexpr int kAnnouncements = 10;

inline std::atomic<int> handled = 0;

inline int Echo(MessageHeader* message)
{
    ++handled;
    return MessageSendReply(message);
}

inline int Mute(MessageHeader*)
{
    ++handled;
    return 0;
}

inline int Announce(MessageHeader* message)
{
    MessageHeader event{};
    event.destination = kModuleNotify;
    event.message_class = kClassEvent;
    for (int number = 0; number < kAnnouncements; ++number) static_cast<void>(MessageSend(&event));
    return Echo(message);
}

constexpr uint32_t Code(uint16_t id) { return uint32_t{id} << 16 | kClassRequest; }
inline const MsgHandler kTable[] = {{"Echo", Code(kEcho), Echo},
                                    {"Mute", Code(kMute), Mute},
                                    {"Announce", Code(kAnnounce), Announce},
                                    {nullptr, 0, nullptr}};

struct Message
{
    explicit Message(uint16_t id = 0, const std::string& payload = "", uint32_t module = kModuleKobd)
    {
        Header()->destination = module;
        Header()->message_class = kClassRequest;
        Header()->id = id;
        Header()->length = static_cast<uint16_t>(payload.size());
        memcpy(bytes + sizeof(MessageHeader), payload.data(), payload.size());
    }
    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(bytes); }
    std::string Payload() { return {bytes + sizeof(MessageHeader), Header()->length}; }

    alignas(MessageHeader) char bytes[kMessageMax] = {};
};

// Puts `size` bytes into the daemon's queue as a client in another language might.
inline int SendRaw(Message& message, size_t size, int64_t reply_queue)
{
    BusHeader header = LoadBusHeader(message.Header());
    header.reply_queue = static_cast<int32_t>(reply_queue + 1);
    StoreBusHeader(message.Header(), header);
    QueueMessage raw;
    raw.type = std::numeric_limits<long>::max();  // any type is received
    memcpy(raw.bytes, message.bytes, sizeof raw.bytes);
    return msgsnd(ModuleQueue(kModuleKobd, false), &raw, size, 0);
}

// A client alone.
class BusQueues : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        handled = 0;
        MessageProccessRegister(kTable);
        ASSERT_EQ(BusClientOpen(&client_), 0);
    }
    void TearDown() override
    {
        if (!own_namespaces) return;
        BusClientClose(&client_);
        MessageDestroy();  // harmless where nothing was joined
    }

    int Call(Message request, int timeout_ms = 5000)
    {
        return BusClientCall(&client_, request.Header(), reply_.Header(), timeout_ms);
    }
    void ExpectServing(const char* why)
    {
        EXPECT_EQ(Call(Message(kEcho, "still there")), 0) << why;
        EXPECT_EQ(reply_.Payload(), "still there") << why;
    }

    BusClient client_;
    Message reply_;
};

// A client of a daemon.
class Bus : public BusQueues
{
protected:
    void SetUp() override
    {
        BusQueues::SetUp();
        if (!own_namespaces) return;
        ASSERT_EQ(Join(kModuleKobd), 0);
    }
};
}  // namespace kobd::test
