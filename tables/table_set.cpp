// Table set: reads the rows to change from a file, checks all of them, and only then stores them,
// each whole.
//   items: path of the change file (text); items behind it are not read
//   reply: the result alone
#include <new>

#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "platform/kob_platform.h"
#include "tables/change_file.h"
#include "tables/change_items.h"
#include "tables/change_notify.h"
#include "tables/handlers.h"
#include "tables/pending_rows.h"
#include "tables/row_codec.h"

namespace kobd
{
namespace
{
// One table set request in hand.
struct TableSet
{
    const MessageHeader* request;
    const char* function;
    Announce announce;
    bool debug;
};

// Calls `step` for every pending row, tables in catalogue order; ends at the first that fails.
int ForEachPendingRow(const TableSet& set, int (*step)(const TableSet& set, const TableDef& table, char* row))
{
    for (const TableDef& table : kTables)
        for (const PendingRow* pending = table.pending->first; pending != nullptr; pending = pending->next)
            if (const int code = step(set, table, pending->row)) return code;
    return kSuccess;
}

int CheckRow(const TableSet& set, const TableDef& table, char* row)
{
    LOG_DEBUG(set.debug && set.announce == Announce::kNo, set.function, "table->name[%s]", table.name);
    if (table.ops->set == nullptr) return kMethodUnavailable;
    return table.ops->validate != nullptr ? table.ops->validate(row) : kSuccess;
}

int WriteRow(const TableSet& set, const TableDef& table, char* row)
{
    LOG_DEBUG(set.debug && set.announce == Announce::kYes, set.function, "table->name[%s]", table.name);
    return table.ops->set(RowIndex(row), row);
}

int ReadPath(const MessageHeader* request, const char** path)
{
    TlvReader reader(Payload(request));
    const auto first = reader.Next();
    while (reader.Next())
    {
        // Walked to the end, so that a message with a broken item changes nothing.
    }
    const auto text = first ? first->Text() : std::nullopt;
    if (!text || reader.Broken()) return kInvalidArgument;
    *path = text->data();
    return kSuccess;
}

int CheckAndWrite(const TableSet& set, const ChangeFile& file, TlvWriter* echo)
{
    if (const int code = TableTlvToRows(file.Items(), echo)) return code;
    if (const int code = ForEachPendingRow(set, CheckRow)) return code;
    return ForEachPendingRow(set, WriteRow);
}

int Apply(const TableSet& set)
{
    const char* path = nullptr;
    if (const int code = ReadPath(set.request, &path)) return code;
    ChangeFile file;
    if (const int code = ChangeFileRead(path, &file)) return code;
    TlvTableLog(file.Items(), set.debug);
    if (set.announce == Announce::kNo) return CheckAndWrite(set, file, nullptr);

    // The echo leaves the values out, so that it is never larger than the file.
    const std::unique_ptr<char[]> room(new (std::nothrow) char[file.size]);
    if (room == nullptr) return kMallocFailed;
    const std::span<char> echo_room(room.get(), file.size);
    TlvWriter echo(echo_room);
    if (const int code = CheckAndWrite(set, file, &echo)) return code;
    update_config();
    TableChangeNotify(echo_room.first(echo.Size()));
    KobdNotify(kEventSetFinished, {});
    return kSuccess;
}

int HandleSet(const MessageHeader* request, const char* function, Announce announce)
{
    Reply reply(request, function);
    const int code = Apply({request, function, announce, reply.Debug()});
    TableRowsRelease();
    return reply.SendResult(code);
}
}  // namespace

int ReqTableSet(MessageHeader* request) { return HandleSet(request, "ReqTableSet", Announce::kYes); }

int ReqTableSetSilent(MessageHeader* request) { return HandleSet(request, "ReqTableSetSilent", Announce::kNo); }
}  // namespace kobd
