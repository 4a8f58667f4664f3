// What the table requests share: their first item names a table.
#pragma once

#include <optional>

#include "daemon/base/tlv.h"
#include "dictionary/records.h"
#include "platform/message.h"

namespace kobd
{
// Finds the table that the item's text names; the item's tag does not matter. Returns 0; 1 when no table has
// that name; 2 when the item holds no text.
[[nodiscard]] int TableOfItem(const TlvItem& item, const TableDef** table);

// A request on one table. The first item names the table; the handler decides what the second one means.
struct TableRequest
{
    const TableDef* table = nullptr;
    std::optional<TlvItem> second;  // within the message
};

// Reads the items of a request; their tags do not matter. Returns 0; 1 as above; 2 when there is no item, an
// item runs past the payload, or the name is no text.
[[nodiscard]] int TableRequestRead(const MessageHeader* message, TableRequest* request);
}  // namespace kobd
