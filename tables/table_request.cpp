// Tables named by items of a request.
#include "tables/table_request.h"

#include "daemon/base/reply.h"
#include "dictionary/name_index.h"

namespace kobd
{
int TableOfItem(const TlvItem& item, const TableDef** table)
{
    const auto name = item.Text();
    if (!name) return kInvalidArgument;
    *table = NameLookup(*name).table;
    return *table != nullptr ? kSuccess : kNotFound;
}

int TableRequestRead(const MessageHeader* message, TableRequest* request)
{
    if (!HasItems(message)) return kInvalidArgument;
    TlvReader reader(Payload(message));
    const auto first = reader.Next();
    request->second = reader.Next();
    while (reader.Next())
    {
        // Walked to the end, so that a message with a broken item changes nothing.
    }
    if (!first || reader.Broken()) return kInvalidArgument;
    return TableOfItem(*first, &request->table);
}
}  // namespace kobd
