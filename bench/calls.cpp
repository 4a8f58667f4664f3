// Calls whose cost is counted in instructions, under callgrind: the numbers hardly depend on the
// machine and not on what else it does. Run by bench/run; prints nothing of its own.
#include <valgrind/callgrind.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "daemon/base/messages.h"
#include "dictionary/name_index.h"
#include "dictionary/value_check.h"
#include "host/tables/row_list.h"
#include "objects/handlers.h"
#include "platform/kob_platform.h"
#include "platform/kobd_exports.h"
#include "tables/row_codec.h"
#include "tests/items.h"
#include "tests/namespaces.h"
#include "validators/address.h"
#include "validators/domain.h"
#include "validators/sim.h"

namespace kobd::bench
{
namespace
{
constexpr int kRepeats = 100;  // bench/run divides by it

// What the calls work on.
struct Subjects
{
    const TableDef* table = NameLookup("ledsTable").table;
    const ObjDef* port = NameLookup("webHttpPort").object;
    const ObjDef* language = NameLookup("webLanguage").object;
    alignas(std::max_align_t) char row[kRowMax] = {};
    alignas(MessageHeader) std::array<char, kMessageMax> reply = {};
    host::RowList list{size_t{64}, size_t{255}};
    int32_t walked = host::kBeforeFirst;
};

void Walk(Subjects& all)
{
    const host::Row* next = all.list.Next(all.walked);
    all.walked = next == nullptr ? host::kBeforeFirst : host::IndexOf(*next);
}

// Ends the program when a call did not do its work: a refusal is short, and no measurement.
void Require(bool done, const char* what)
{
    if (done) return;
    fprintf(stderr, "%s did not do its work\n", what);
    exit(1);
}

#define MEASURE(what, call)                                               \
    do                                                                    \
    {                                                                     \
        Require(call, what); /* first use of what is made when needed */  \
        CALLGRIND_START_INSTRUMENTATION;                                  \
        CALLGRIND_ZERO_STATS;                                             \
        bool done = true;                                                 \
        for (int repeat = 0; repeat < kRepeats; ++repeat) done &= (call); \
        CALLGRIND_DUMP_STATS_AT(what);                                    \
        CALLGRIND_STOP_INSTRUMENTATION;                                   \
        Require(done, what);                                              \
    } while (false)

void MeasureDictionary(Subjects& all)
{
    MEASURE("name lookup, 11 characters", NameLookup("webHttpPort").object != nullptr);
    MEASURE("name lookup, 31 characters", NameLookup("cbsdInstallationAntennaBeamwidth").object != nullptr);
    MEASURE("name lookup, unknown", NameLookup("webHttpPorts").object == nullptr);
    MEASURE("value check, integer in a range", ParameterCheck("8080", &all.port->check) == 0);
    MEASURE("value check, one of nine choices", ParameterCheck("es", &all.language->check) == 0);
}

// A get of 100 objects from the message to its answer, without the bus.
void MeasureGet(Subjects& all)
{
    std::string items;
    for (int i = 0; i < 100; ++i) items += test::Name("webHttpPort");
    auto* request = reinterpret_cast<MessageHeader*>(all.reply.data());
    *request = {};
    request->length = static_cast<uint16_t>(items.size());
    memcpy(request + 1, items.data(), items.size());
    MEASURE("get of 100 objects, without the bus", ReqObjGet(request) == 0);
}

bool Decode(Subjects& all, const char* column, const char* text)
{
    const ColumnDef* found = ColumnOf(*all.table, column);
    return found != nullptr && TableFieldFromString(all.row, *found, text) == 0;
}

void MeasureRows(Subjects& all)
{
    const auto encode = [&]
    {
        TlvWriter out(all.reply);
        return TableRowToTlv(all.row, *all.table, out) != 0;
    };
    MEASURE("field decode, text of ledsTable", Decode(all, "Name", "power"));
    MEASURE("row encode, ledsTable", encode());
    while (true)
    {
        int32_t index;
        if (all.list.Add(&index) != 0) break;
    }
    MEASURE("next row of 255", (Walk(all), true));
}

void MeasureValidators()
{
    MEASURE("a line of the log", kobd_log_print("bench", 1, "%s", "a line") == 0);
    MEASURE("validIpv4, two lines of the log", validIpv4("192.168.1.254") == 0);
    MEASURE("validDomain", validDomain("time.example.com") == 0);
    MEASURE("validMac", validMac("00:11:22:aa:bb:cc") == 0);
    MEASURE("validLockPin", validLockPin("1,1234") == 0);
}
}  // namespace
}  // namespace kobd::bench

// In place of the bus's own: the answer goes nowhere.
int MessageSendReply(MessageHeader*) { return 0; }

int main()
{
    using namespace kobd;
    test::EnterOwnNamespaces();  // the log has a fixed name
    if (!test::own_namespaces) return 1;
    NameIndexBuild();
    kobd_lib_init();  // the values of the imitated router
    static bench::Subjects all;
    bench::MeasureDictionary(all);
    bench::MeasureGet(all);
    bench::MeasureRows(all);
    bench::MeasureValidators();
    return 0;
}
