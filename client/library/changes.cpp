// Changes of rows: judged by the dictionary, written into a change file, sent.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "client/dictionary/column_value.h"
#include "client/library/change_file.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
Explained Refused(int code, const std::string& text) { return {.code = code, .reason = text, .text = text}; }

// What the dictionary says against the row; code 0 when it finds nothing wrong.
Explained JudgeRow(const RowWithValues& row)
{
    const TableEntry* table = FindTable(row.table);
    if (table == nullptr) return Refused(kNotFound, NoSuchName("table", row.table));
    for (const auto& [column, value] : row.values)
    {
        const Fault fault = JudgeCell(*table, column, value);
        if (!fault) continue;
        Explained why = Refused(fault.code, fault.reason);
        why.table = row.table;
        why.index = row.index;
        why.column = column;
        why.value = value;
        if (!fault.right.empty()) why.right = fault.right;
        why.text = row.Text() + ": " + fault.Text(column, value);
        return why;
    }
    return {};
}

void NoteIndex(void* context, const char* table, int32_t index, const char* const*, const char* const*, size_t)
{
    static_cast<std::vector<RowWithValues>*>(context)->push_back({table, index});
}

// The daemon would write the rows before a missing one and then stop.
Explained FindMissingRow(kobd_client* client, const std::vector<RowWithValues>& rows)
{
    std::vector<const char*> tables;
    for (const RowWithValues& row : rows)
        if (std::ranges::find(tables, row.table) == tables.end()) tables.push_back(row.table.c_str());
    std::vector<RowWithValues> present;
    if (const int code = kobd_rows_of(client, tables.data(), tables.size(), NoteIndex, &present)) return {.code = code};
    for (const RowWithValues& row : rows)
    {
        std::vector<int32_t> indexes;
        for (const RowWithValues& one : present)
            if (one.table == row.table) indexes.push_back(one.index);
        if (std::ranges::find(indexes, row.index) != indexes.end()) continue;
        Explained why = Refused(kIndexNotFound, NoRow(row.table, row.index, indexes));
        why.table = row.table;
        why.index = row.index;
        return why;
    }
    return {};
}

// 0, or the code of what was found wrong before anything was sent.
int JudgeBeforehand(kobd_client* client, const std::vector<RowWithValues>& rows)
{
    for (const RowWithValues& row : rows)
        if (Explained why = JudgeRow(row); why.code != kSuccess) return Ended(client, std::move(why));
    if (rows.size() <= 1) return kSuccess;
    Explained why = FindMissingRow(client, rows);
    if (why.code == kSuccess || why.reason.empty()) return why.code;  // a failed question has explained itself
    return Ended(client, std::move(why));
}

int Fill(const std::vector<RowWithValues>& rows, kobd_items* items)
{
    for (const RowWithValues& row : rows)
    {
        if (const int code = kobd_items_add_text(items, KOBD_TAG_TABLE_NAME, row.table.c_str())) return code;
        if (const int code = kobd_items_add_number(items, KOBD_TAG_ROW_INDEX, row.index)) return code;
        for (const auto& [column, value] : row.values)
        {
            if (const int code = kobd_items_add_text(items, KOBD_TAG_COLUMN_NAME, column.c_str())) return code;
            if (const int code = kobd_items_add_text(items, KOBD_TAG_VALUE, value.c_str())) return code;
        }
    }
    return kSuccess;
}

// Sends the path of the change file, and waits as long as its tables may take.
int Send(kobd_client* client, const std::vector<RowWithValues>& rows, const char* path, bool silent)
{
    kobd_items request;
    if (const int code = kobd_items_add_text(&request, KOBD_TAG_VALUE, path)) return Ended(client, code);
    const std::optional<int> timeout_ms = client->timeout_ms;
    const bool slow = std::ranges::any_of(rows, [](const RowWithValues& row) { return IsCellularTable(row.table); });
    if (slow && !timeout_ms) client->timeout_ms = kCellularTimeoutMs;
    const int code = kobd_call(client, silent ? KOBD_TABLE_SET_SILENT : KOBD_TABLE_SET, &request);
    client->timeout_ms = timeout_ms;
    if (code != kSuccess) client->changes = rows;
    return code;
}
}  // namespace
}  // namespace kobd::client

using namespace kobd::client;

kobd_changes* kobd_changes_new(void) { return new (std::nothrow) kobd_changes; }

void kobd_changes_free(kobd_changes* changes) { delete changes; }

int kobd_changes_add(kobd_changes* changes, const char* table, int32_t index, const char* column, const char* value)
{
    for (const char* text : {table, column, value})
        if (strlen(text) >= UINT16_MAX) return kobd::kBufferLimit;
    std::vector<RowWithValues>& rows = changes->rows;
    if (rows.empty() || rows.back().table != table || rows.back().index != index) rows.push_back({table, index});
    rows.back().values.push_back({column, value});
    return kobd::kSuccess;
}

int kobd_changes_set(kobd_client* client, const kobd_changes* changes, int flags)
{
    client->answered = false;
    client->explained.reset();
    client->changes.clear();
    if (changes->rows.empty()) return Ended(client, kobd::kSuccess);
    if ((flags & KOBD_UNCHECKED) == 0)
        if (const int code = JudgeBeforehand(client, changes->rows)) return code;
    kobd_items items;
    ChangeFile file;
    if (const int code = Fill(changes->rows, &items)) return Ended(client, code);
    if (!file.Write(items))
        return Ended(
            client, Refused(kobd::kSystemError, std::string("cannot write a change file in /tmp: ") + strerror(errno)));
    return Send(client, changes->rows, file.Path(), (flags & KOBD_SILENT) != 0);
}
