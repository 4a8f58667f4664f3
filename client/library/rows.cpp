// Rows of tables as pairs of column and value.
#include <algorithm>
#include <memory>

#include "client/library/connection.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
// A row follows its table name and index; pairs of column and value follow those.
std::optional<std::vector<RowWithValues>> ReadRows(kobd_bytes items)
{
    std::vector<RowWithValues> rows;
    std::string table;
    uint16_t previous = kTagValue;
    kobd_item item{};
    int more = 0;
    while ((more = kobd_bytes_next(&items, &item)) == 1)
    {
        if (item.text == nullptr && item.tag != kTagRowIndex) return std::nullopt;
        if (item.tag == kTagTableName && previous == kTagValue)
            table = item.text;
        else if (item.tag == kTagRowIndex && previous == kTagTableName && item.length == sizeof item.number)
            rows.push_back({table, item.number});
        else if (item.tag == kTagColumnName && !rows.empty() && (previous == kTagRowIndex || previous == kTagValue))
            rows.back().values.push_back({item.text, ""});
        else if (item.tag == kTagValue && previous == kTagColumnName)
            rows.back().values.back().value = item.text;
        else
            return std::nullopt;
        previous = item.tag;
    }
    if (more != 0 || previous != kTagValue) return std::nullopt;
    return rows;
}

namespace
{
int EndedUnread(kobd_client* client, const std::string& what)
{
    return Ended(client, {.code = kSystemError, .reason = what, .text = what});
}

// The table and the index, or the table alone. 0 or 7.
int AddRow(kobd_items* items, const char* table, std::optional<int32_t> index)
{
    if (const int code = kobd_items_add_text(items, KOBD_TAG_TABLE_NAME, table)) return code;
    return index ? kobd_items_add_number(items, KOBD_TAG_ROW_INDEX, *index) : kSuccess;
}

void Tell(const RowWithValues& row, kobd_row_function each, void* context)
{
    std::vector<const char*> columns;
    std::vector<const char*> values;
    for (const NameAndValue& one : row.values)
    {
        columns.push_back(one.name.c_str());
        values.push_back(one.value.c_str());
    }
    each(context, row.table.c_str(), row.index, columns.data(), values.data(), columns.size());
}
}  // namespace
}  // namespace kobd::client

using namespace kobd::client;

int kobd_row_get(kobd_client* client, const char* table, int32_t index, kobd_pair_function each, void* context)
{
    kobd_items items;
    if (const int code = AddRow(&items, table, index)) return Ended(client, code);
    if (const int code = kobd_call(client, KOBD_TABLE_GET, &items)) return code;
    const auto rows = ReadRows(client->left);
    if (!rows || rows->size() != 1) return EndedUnread(client, "the reply holds no rows");
    for (const NameAndValue& one : rows->front().values) each(context, one.name.c_str(), one.value.c_str());
    return kobd::kSuccess;
}

int kobd_rows(kobd_client* client, const char* table, kobd_row_function each, void* context)
{
    return kobd_rows_of(client, &table, 1, each, context);
}

int kobd_rows_of(kobd_client* client, const char* const* tables, size_t count, kobd_row_function each, void* context)
{
    kobd_items items;
    kobd_bytes content = {};
    if (count == 0) return Ended(client, kobd::kSuccess);
    for (size_t i = 0; i < count; ++i)
        if (const int code = AddRow(&items, tables[i], {})) return Ended(client, code);
    if (const int code = kobd_dump(client, KOBD_TABLE_DUMP, &items, &content)) return code;
    const auto rows = ReadRows(content);
    if (!rows) return EndedUnread(client, "the dump file holds no rows that can be read");
    for (const RowWithValues& row : *rows) Tell(row, each, context);
    return kobd::kSuccess;
}

int kobd_row_add(kobd_client* client, const char* table, const char* parent_path, int32_t* index)
{
    kobd_items items;
    int code = AddRow(&items, table, {});
    if (code == 0 && parent_path != nullptr) code = kobd_items_add_text(&items, KOBD_TAG_PARENT_PATH, parent_path);
    if (code != 0) return Ended(client, code);
    code = kobd_call(client, parent_path != nullptr ? KOBD_SUB_TABLE_ADD : KOBD_TABLE_ADD, &items);
    if (code != 0) return code;
    kobd_item item{};
    if (kobd_reply_next(client, &item) != 1 || item.length != sizeof item.number)
        return EndedUnread(client, "the reply holds no index");
    *index = item.number;
    return kobd::kSuccess;
}

int kobd_row_del(kobd_client* client, const char* table, int32_t index)
{
    kobd_items items;
    if (const int code = AddRow(&items, table, index)) return Ended(client, code);
    return kobd_call(client, KOBD_TABLE_DEL, &items);
}
