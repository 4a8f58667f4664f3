// Reads the items of a change file into pending rows.
#include "tables/change_items.h"

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/name_index.h"
#include "dictionary/row_field.h"
#include "tables/pending_rows.h"
#include "tables/row_codec.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "TableTlvToRows";

// A set of tags in one byte: bit 7 stands for tag 1, bit 0 for tag 8. Other tags are in no set.
constexpr uint8_t Only(uint16_t tag) { return tag >= 1 && tag <= 8 ? static_cast<uint8_t>(0x100 >> tag) : 0; }

// Where the reading stands. Each function takes the item of one tag.
struct Position
{
    TlvWriter* echo;
    uint8_t allowed = Only(kTagTableName);
    const TableDef* table = nullptr;
    char* row = nullptr;  // in the pending row, table->row_size bytes
    const ColumnDef* column = nullptr;
};

bool EchoText(const Position& at, uint16_t tag, std::string_view text)
{
    return at.echo == nullptr || at.echo->Text(tag, text);
}

int TakeTableName(Position& at, const TlvItem& item)
{
    const auto name = item.Text();
    if (!name) return kInvalidArgument;
    if (!EchoText(at, kTagTableName, *name)) return kBufferLimit;
    at.table = NameLookup(*name).table;
    at.allowed = Only(kTagRowIndex);
    if (at.table != nullptr) return kSuccess;
    LOG_ALWAYS(kFunction, "no table of the name %s", name->data());
    return kNotFound;
}

int TakeRowIndex(Position& at, const TlvItem& item)
{
    const auto index = item.Int();
    if (!index) return kInvalidArgument;
    if (at.echo != nullptr && !at.echo->Int(kTagRowIndex, *index)) return kBufferLimit;
    PendingRow* pending = nullptr;
    if (const int code = PendingRowOf(*at.table, *index, &pending)) return code;
    at.row = pending->row;
    at.allowed = Only(kTagColumnName);
    return kSuccess;
}

int TakeColumnName(Position& at, const TlvItem& item)
{
    const auto name = item.Text();
    if (!name) return kInvalidArgument;
    if (!EchoText(at, kTagColumnName, *name)) return kBufferLimit;
    at.column = ColumnOf(*at.table, *name);
    at.allowed = Only(kTagValue);
    if (at.column != nullptr) return kSuccess;
    LOG_ALWAYS(kFunction, "table %s has no column of the name %s", at.table->name, name->data());
    return kElementNotFound;
}

int TakeValue(Position& at, const TlvItem& item)
{
    const auto text = item.Text();
    if (!text) return kInvalidArgument;
    at.allowed = Only(kTagColumnName) | Only(kTagTableName);
    const int code = TableFieldFromString(at.row, *at.column, text->data());
    if (code != kSuccess)
        LOG_ALWAYS(kFunction, "%s of table %s takes at most %u bytes, %zu were given", at.column->name, at.table->name,
                   at.column->length - 1, text->size());
    return code;
}

int Take(Position& at, const TlvItem& item)
{
    if ((at.allowed & Only(item.tag)) == 0)
    {
        LOG_ALWAYS(kFunction, "an item of tag %u out of order", item.tag);
        return kInvalidArgument;
    }
    switch (item.tag)
    {
        case kTagTableName: return TakeTableName(at, item);
        case kTagRowIndex: return TakeRowIndex(at, item);
        case kTagColumnName: return TakeColumnName(at, item);
        default: return TakeValue(at, item);
    }
}
}  // namespace

int TableTlvToRows(std::span<const char> items, TlvWriter* echo)
{
    Position at{.echo = echo};
    TlvReader reader(items);
    while (const auto item = reader.Next())
        if (const int code = Take(at, *item)) return code;
    return reader.Broken() ? kInvalidArgument : kSuccess;
}
}  // namespace kobd
