// Items to rows.
#include "client/rows/table_rows.h"

#include "client/dictionary/names.h"
#include "client/requests/dump_file.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
std::string Row::ValueOf(std::string_view column) const
{
    const Assignment* found = FindNamed(values, column);
    return found != nullptr ? found->value : "";
}

bool AppendRows(const Items& items, TableRows* rows)
{
    std::vector<Row>* table = nullptr;
    uint16_t previous = kTagValue;
    for (const Item& item : items)
    {
        if (item.tag == kTagTableName && previous == kTagValue)
            table = &(*rows)[item.text];
        else if (item.tag == kTagRowIndex && previous == kTagTableName && item.number)
            table->push_back({*item.number});
        else if (item.tag == kTagColumnName && table != nullptr && (previous == kTagRowIndex || previous == kTagValue))
            table->back().values.push_back({item.text, ""});
        else if (item.tag == kTagValue && previous == kTagColumnName)
            table->back().values.back().value = item.text;
        else
            return false;
        previous = item.tag;
    }
    return previous == kTagValue;
}

Failure DumpRows(const Options& options, const std::string& what, const Tables& tables, TableRows* rows)
{
    Items items;
    for (const TableEntry* table : tables)
    {
        items.emplace_back(kTagTableName, table->name);
        (*rows)[table->name] = {};
    }
    const Response response = Call(options, KOBD_TABLE_DUMP, items);
    if (Failure failure = FailureOf(response, what)) return failure;
    std::string bytes;
    if (Failure failure = TakeDumpFile(response, &bytes).In(what)) return failure;
    const auto read = ReadItems(bytes);
    if (read && AppendRows(*read, rows)) return {};
    return {kSystemError, what + ": the dump file holds no rows that can be read"};
}
}  // namespace kobd::client
