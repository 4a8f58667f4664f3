// Any bytes on the daemon's own queue: its real receive thread and handlers, a real System V queue,
// the host platform behind. Inputs are pieces, each sent as one message; behind them a request whose
// answer tells that all were taken and that the daemon serves on.
//   repeated: a length of two bytes, that many bytes of a message
#include <sys/msg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "daemon/base/tlv.h"
#include "daemon/handler_table.h"
#include "daemon/lifecycle.h"
#include "dictionary/name_index.h"
#include "fuzz/target.h"
#include "host/bus/bus_queues.h"
#include "host/commit.h"
#include "host/state/folder.h"
#include "platform/bus_client.h"
#include "tests/items.h"
#include "tests/joined.h"

using namespace kobd;
using namespace kobd::test;

namespace
{
constexpr int kAnswerMs = 20000;  // sanitized, on a busy machine
BusClient client;

struct Raw
{
    long type;
    char bytes[kMessageMax];
};

MessageHeader HeaderOf(uint16_t message_class, uint16_t id, size_t length)
{
    MessageHeader header = {};
    header.destination = kModuleKobd;
    header.message_class = message_class;
    header.id = id;
    header.length = static_cast<uint16_t>(length);
    return header;
}

std::string Piece(uint16_t message_class, uint16_t id, const std::string& payload, size_t length)
{
    const MessageHeader header = HeaderOf(message_class, id, length);
    const std::string bytes = std::string(reinterpret_cast<const char*>(&header), sizeof header) + payload;
    const auto size = static_cast<uint16_t>(bytes.size());
    return std::string(reinterpret_cast<const char*>(&size), sizeof size) + bytes;
}

// A message that names a reply queue gets that of our client; others are no queues of ours.
void Send(std::string_view bytes)
{
    static Raw raw;
    raw.type = 1;
    memcpy(raw.bytes, bytes.data(), bytes.size());
    if (bytes.size() >= sizeof(MessageHeader))
    {
        auto* header = reinterpret_cast<MessageHeader*>(raw.bytes);
        host::BusHeader bus = host::LoadBusHeader(header);
        if (bus.reply_queue != 0) bus.reply_queue = client.queue + 1;
        host::StoreBusHeader(header, bus);
    }
    const int queue = host::ModuleQueue(kModuleKobd, false);
    PROMISE(queue >= 0 && msgsnd(queue, &raw, bytes.size(), 0) == 0, "the daemon's queue takes no message");
}

void ExpectService()
{
    alignas(MessageHeader) static char reply[kMessageMax];
    const std::string items = TextItem(kTagObjectName, "webLanguage");
    alignas(MessageHeader) char bytes[256];
    auto* request = reinterpret_cast<MessageHeader*>(bytes);
    *request = HeaderOf(kClassRequest, 2, items.size());
    memcpy(request + 1, items.data(), items.size());
    const int code = BusClientCall(&client, request, reinterpret_cast<MessageHeader*>(reply), kAnswerMs);
    PROMISE(code == 0, "the daemon serves no more: %d", code);
}

void RemoveDumps()
{
    for (const auto& file : std::filesystem::directory_iterator("/tmp"))
        if (file.path().filename().string().starts_with("kobd-")) std::filesystem::remove(file.path());
}
}  // namespace

void kobd::fuzz::Prepare()
{
    static bool prepared = false;
    if (prepared) return;
    prepared = true;
    setenv("KOBD_STATE_DIR", "/tmp/kobd_fuzzed_bus", 1);
    host::LoadState();
    DictionaryInit(kHandlers.data());
    PROMISE(test::AwaitModule(kModuleKobd), "the bus cannot be joined");
    PROMISE(BusClientOpen(&client) == 0, "no queue for a client");
    atexit([] { BusClientClose(&client), DictionaryExit(); });
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    const std::string get = TextItem(kTagObjectName, "IMEI");
    std::string replied = Piece(kClassRequest, 2, get, get.size());
    replied[2 + 4] = 1;  // within the bus library's bytes
    return {
        replied,
        Piece(kClassRequest, 2, get, get.size()),
        Piece(kClassRequest, 2, get, get.size() + 1),
        Piece(kClassRequest, 1, Pair("webHttpPort", "81"), Pair("webHttpPort", "81").size()),
        Piece(kClassRequest, 7, TextItem(kTagTableName, "FwUrlFilterTable"), 4),
        Piece(kClassRequest, 9, Row("DnsClientTable", 1), Row("DnsClientTable", 1).size()) + replied,
        Piece(kClassEvent, 2, "4", 2),
        Piece(kClassRequest, 9999, "", 65535),
        std::string("\x03\0abc", 5),
    };
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    while (bytes.size() >= 2)
    {
        uint16_t length;
        memcpy(&length, bytes.data(), sizeof length);
        bytes.remove_prefix(sizeof length);
        const std::string_view piece = bytes.substr(0, std::min<size_t>(length, kMessageMax));
        bytes.remove_prefix(piece.size());
        Send(piece);
    }
    ExpectService();
    RemoveDumps();
    return 0;
}
