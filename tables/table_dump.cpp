// Table dump: writes every row of the named tables to a file of the daemon's own naming.
//   items: table names (text), one a table; their tags are not looked at
//   reply: dump file name (tag 2); the file is the client's to remove
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "daemon/base/dump_file.h"
#include "daemon/base/log.h"
#include "daemon/base/reply.h"
#include "tables/handlers.h"
#include "tables/row_codec.h"
#include "tables/table_request.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ReqTableDump";
constexpr int32_t kBeforeFirst = -1;               // asks a list for its first row
constexpr size_t kFileBuffer = size_t{32} * 1024;  // bytes gathered for one write

// The items of one row. Every row of the catalogue fits the first room; only a text held outside
// its row asks for more, and an item can carry less than 64 KiB of one.
class RowItems
{
public:
    // 0, or 7 when there is no memory.
    int Encode(const void* row, const TableDef& table)
    {
        for (;;)
        {
            TlvWriter items(room_);
            size_ = TableRowToTlv(row, table, items);
            if (size_ != 0) return kSuccess;
            const size_t larger = 2 * room_.size();
            heap_.reset(new (std::nothrow) char[larger]);
            if (heap_ == nullptr) return kMallocFailed;
            room_ = {heap_.get(), larger};
        }
    }

    bool Write(FILE* file) const { return fwrite(room_.data(), 1, size_, file) == size_; }

private:
    static std::array<char, kRowItemsMax> first_room;

    std::unique_ptr<char[]> heap_;
    std::span<char> room_ = first_room;
    size_t size_ = 0;
};

std::array<char, kRowItemsMax> RowItems::first_room;

// Notices a walk that comes back to an index it has seen, as in a list where rows share an index: it
// would never end and fill the file system. One index is remembered, a later one whenever as many
// rows have passed as before it (Brent's cycle detection), so that a walk needs no memory of its rows.
class WalkGuard
{
public:
    bool ComesBack(int32_t index)
    {
        if (seen_ && index == remembered_) return true;
        if (!seen_ || passed_ == limit_)
        {
            limit_ = seen_ ? 2 * limit_ : 1;
            passed_ = 0;
            remembered_ = index;
            seen_ = true;
        }
        ++passed_;
        return false;
    }

private:
    bool seen_ = false;
    int32_t remembered_ = 0;
    uint32_t passed_ = 0;  // rows since the remembered one, it included
    uint32_t limit_ = 0;   // rows after which another is remembered
};

int WriteTable(FILE* file, const TableDef& table, RowItems& items)
{
    alignas(std::max_align_t) char row[kRowMax];
    WalkGuard guard;
    for (int32_t previous = kBeforeFirst;; previous = RowIndex(row))
    {
        memset(row, 0, table.row_size);  // a list that fills only part of it shows nothing of the row before
        if (table.ops->next(previous, row) != kSuccess) return kSuccess;
        if (const int code = items.Encode(row, table)) return code;
        if (!items.Write(file)) return kSystemError;
        if (!guard.ComesBack(RowIndex(row))) continue;
        LOG_ALWAYS(kFunction, "%s: the walk comes back to index %d, ended there", table.name, RowIndex(row));
        return kSuccess;
    }
}

int WriteTables(FILE* file, const MessageHeader* request, const Reply& reply)
{
    RowItems items;
    TlvReader reader(Payload(request));
    while (const auto item = reader.Next())
    {
        const TableDef* table = nullptr;
        if (const int code = TableOfItem(*item, &table)) return code;
        LOG_DEBUG(reply.Debug(), kFunction, "table->name[%s]", table->name);
        if (const int code = WriteTable(file, *table, items)) return code;
    }
    return reader.Broken() ? kInvalidArgument : kSuccess;
}
}  // namespace

int ReqTableDump(MessageHeader* request)
{
    Reply reply(request, kFunction);
    if (!HasItems(request)) return reply.SendResult(kInvalidArgument);
    char name[kDumpFileName];
    FILE* file = DumpFileOpen(kFunction, name);
    if (file == nullptr) return reply.SendResult(kSystemError);
    static char buffer[kFileBuffer];
    setvbuf(file, buffer, _IOFBF, sizeof buffer);
    const int written = WriteTables(file, request, reply);
    if (const int code = DumpFileClose(kFunction, file, name, written)) return reply.SendResult(code);
    reply.PushText(kTagValue, name);
    return reply.Send();
}
}  // namespace kobd
