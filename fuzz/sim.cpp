// Any bytes as messages of class 9 to the imitated router, without a bus: each gets one whole answer, nothing that is
// simulated reaches the database, and a clear leaves the router as it was.
//   repeated: id (one byte), length (two bytes), that many bytes of items
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "daemon/base/messages.h"
#include "daemon/base/tlv.h"
#include "fuzz/target.h"
#include "host/commit.h"
#include "host/objects/object_values.h"
#include "host/objects/sources.h"
#include "host/sim_messages.h"
#include "host/state/folder.h"
#include "host/tables/lists.h"
#include "platform/kob_platform.h"
#include "tests/items.h"

using namespace kobd;
using namespace kobd::host;
using test::Column;
using test::IntItem;
using test::Pair;
using test::TextItem;

namespace
{
std::string before;   // the whole router
std::string written;  // and its database

std::string Router()
{
    std::string all;
    char value[kValueBuffer] = "";
    for (size_t object = 0; object < Sources().size(); ++object)
        all += ObjectValueGet(object, value) == 0 ? std::string(value) + "\n" : "?";
    for (const List& list : AllLists())
        for (const host::Row& row : list.rows.Rows())
            all.append(row.block.data(), row.block.size()).append(row.parent_path);
    return all;
}

std::string Written()
{
    std::string all;
    const State state;
    for (const char* sql : {"SELECT name || value FROM objects", "SELECT list || number || field || value FROM cells",
                            "SELECT name || last FROM lists"})
        for (Query query = state->Ask(sql); query.Next();) all += std::string(query.Text(0)) + "\n";
    return all;
}

int Ask(uint16_t id, std::string_view items)
{
    alignas(MessageHeader) static char bytes[kMessageMax];
    auto* request = reinterpret_cast<MessageHeader*>(bytes);
    request->message_class = kClassHostControl;
    request->id = id;
    request->length = static_cast<uint16_t>(std::min(items.size(), kPayloadMax));
    memcpy(request + 1, items.data(), request->length);
    static char room[kPayloadMax - kIntItem];
    TlvWriter answer(room);
    const int code = AnswerSimulator(request, &answer);
    PROMISE(code == 0 || answer.Size() == 0, "a refusal has items");
    TlvReader reader(std::span<const char>(room).first(answer.Size()));
    while (reader.Next()) continue;
    PROMISE(!reader.Broken(), "an answer is broken");
    return code;
}

std::string Piece(uint16_t id, const std::string& items)
{
    const auto length = static_cast<uint16_t>(items.size());
    return std::string(1, static_cast<char>(id)) + std::string(reinterpret_cast<const char*>(&length), 2) + items;
}
}  // namespace

void kobd::fuzz::Prepare()
{
    setenv("KOBD_STILL", "1", 1);
    setenv("KOBD_STATE_DIR", "/tmp/kobd_fuzzed_sim", 1);
    LoadState();
    before = Router();
    written = Written();
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    const std::string fail = TextItem(kTagValue, "set") + IntItem(kTagValue, 17) + IntItem(kTagValue, 2);
    return {
        Piece(kHostSimSet, Pair("RSRP", "-120") + Pair("webHttpPort", "x")) +
            Piece(kHostSimList, IntItem(kTagValue, 0)),
        Piece(kHostSimSetAnnounced, Pair("LANStartIP", "10.0.0.1")),
        Piece(kHostSimRowAdd, TextItem(kTagTableName, "PortRedirectTable") + Column("Protocol", "TCP")),
        Piece(kHostSimRowSet, test::Row("ApnConfigTable", 0) + Column("ApnEnable", "0") + Column("MTU", "1")) +
            Piece(kHostSimRowDel, test::Row("ApnConfigTable", 0)),
        Piece(kHostSimRowAdd, TextItem(kTagTableName, "SmsTable") + Column("Content", "text")) +
            Piece(kHostSimRowDel, test::Row("SmsTable", 5)) + Piece(kHostSimRowDel, test::Row("SmsTable", 1)),
        Piece(kHostSimFail, TextItem(kTagObjectName, "webHttpPort") + fail),
        Piece(kHostSimFail, TextItem(kTagTableName, "ledsTable") + fail) + Piece(kHostSimClear, ""),
        Piece(kHostSimFail, TextItem(kTagValue, "commit") + IntItem(kTagValue, 14) + IntItem(kTagValue, 1)),
        Piece(kHostSimSlow, TextItem(kTagTableName, "ledsTable") + IntItem(kTagValue, 1) + IntItem(kTagValue, 1)),
        Piece(kHostSimList, IntItem(kTagValue, 1)),
    };
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    while (bytes.size() >= 3)
    {
        uint16_t length;
        const auto id = static_cast<uint8_t>(bytes[0]);
        memcpy(&length, bytes.data() + 1, sizeof length);
        bytes.remove_prefix(3);
        const std::string_view items = bytes.substr(0, length);
        bytes.remove_prefix(items.size());
        Ask(id, items);
    }
    static_cast<void>(update_config());
    PROMISE(Written() == written, "something simulated was written");
    PROMISE(Ask(kHostSimClear, "") == 0, "it cannot be cleared");
    PROMISE(Router() == before, "a clear leaves something behind");
    return 0;
}
