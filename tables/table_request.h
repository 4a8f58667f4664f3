// What table requests have in common: a table named by an item.
#pragma once

#include <optional>

#include "daemon/base/tlv.h"
#include "dictionary/records.h"
#include "platform/message.h"

namespace kobd
{
// Finds the table that the item's text names, whatever its tag. 0; 1 no such name, or an object's;
// 2 the item holds no text.
[[nodiscard]] int TableOfItem(const TlvItem& item, const TableDef** table);

// A request on one table: the first item names it, the meaning of a second is the handler's.
struct TableRequest
{
    const TableDef* table = nullptr;
    std::optional<TlvItem> second;  // within the message
};

// Takes the request apart; its tags are not looked at. 0; 1 as above; 2 no item, an item that runs
// past the payload, a name that is no text.
[[nodiscard]] int TableRequestRead(const MessageHeader* message, TableRequest* request);
}  // namespace kobd
