// Items to rows.
#include "client/rows/table_rows.h"

#include <algorithm>

#include "client/requests/dump_file.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"

namespace kobd::client
{
std::string TableRow::ValueOf(const std::string& column) const
{
    const auto found = std::find(columns.begin(), columns.end(), column);
    return found == columns.end() ? "" : values[static_cast<size_t>(found - columns.begin())];
}

bool AppendRows(const Items& items, std::vector<TableRow>* rows)
{
    const size_t before = rows->size();
    uint16_t previous = kTagValue;
    for (const Item& item : items)
    {
        const bool in_row = rows->size() > before;
        if (item.tag == kTagTableName && previous == kTagValue)
            rows->push_back({item.text, 0, {}, {}});
        else if (item.tag == kTagRowIndex && previous == kTagTableName && item.number)
            rows->back().index = *item.number;
        else if (item.tag == kTagColumnName && in_row && (previous == kTagRowIndex || previous == kTagValue))
            rows->back().columns.push_back(item.text);
        else if (item.tag == kTagValue && previous == kTagColumnName)
            rows->back().values.push_back(item.text);
        else
            return false;
        previous = item.tag;
    }
    return previous == kTagValue;
}

Failure DumpRows(const Options& options, const std::string& what, const std::vector<const TableEntry*>& tables,
                 std::vector<TableRow>* rows)
{
    Items items;
    for (const TableEntry* table : tables) items.emplace_back(kTagTableName, table->name);
    const Response response = Call(options, KOBD_TABLE_DUMP, items);
    if (Failure failure = FailureOf(response, what)) return failure;
    std::string bytes;
    if (const Failure failure = TakeDumpFile(response, &bytes)) return {failure.code, what + ": " + failure.what};
    const auto read = ReadItems(bytes);
    if (read && AppendRows(*read, rows)) return {};
    return {kSystemError, what + ": the dump file holds no rows that can be read"};
}
}  // namespace kobd::client
