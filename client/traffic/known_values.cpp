#include "client/traffic/known_values.h"

#include <algorithm>

#include "client/dictionary/names.h"
#include "client/output/outcome.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
std::optional<std::string> Find(const Values& values, const std::string& name)
{
    const auto found = values.find(name);
    return found != values.end() ? std::optional(found->second) : std::nullopt;
}

// Of a row that was just added nothing is known but that it is empty.
std::optional<std::string> FindColumn(const Row* row, const std::string& column)
{
    return row != nullptr ? std::optional(row->ValueOf(column)) : std::nullopt;
}

Row* FindRow(std::vector<Row>* rows, int32_t index)
{
    const auto found = std::ranges::find(*rows, index, &Row::index);
    return found != rows->end() ? &*found : nullptr;
}

std::optional<Row> ReadRow(const Options& options, const std::string& table, int32_t index)
{
    Row row = {index};
    if (ReadOneRow(options, table, &row).code != 0) return std::nullopt;
    return row;
}

Items ItemsOf(const kobd_tapped& message)
{
    const auto items = ReadItems({static_cast<const char*>(message.payload.next), message.payload.left});
    return items.value_or(Items());
}
}  // namespace

Failure KnownValues::Read(const Options& options, const Words& patterns)
{
    Words names;
    for (const std::string& name : ReadableObjects())
        if (MatchesAny(patterns, name, options.exact_case)) names.push_back(name);
    if (Failure failure = FailureOf(ReadValues(options, names, &values_), "watch")) return failure;
    Tables tables;
    for (const TableEntry& table : kTableRows)
        if (table.Has(kNext) && !table.daemon_list && MatchesAny(patterns, table.name, options.exact_case))
            tables.push_back(&table);
    if (tables.empty() || !DumpRows(options, "watch", tables, &rows_)) return {};
    for (const TableEntry* table : tables)  // one that cannot be read must not hide the others
        if (Failure failure = DumpRows(options, "watch", {table}, &rows_))
        {
            if (failure.code != kSystemError) return failure;
            SayError(failure.what);
        }
    return {};
}

void KnownValues::Note(const kobd_tapped& message)
{
    const bool is_set =
        message.message_class == kClassRequest && (message.id == kReqObjSet || message.id == kReqObjSetSilent);
    if (message.kind == KOBD_TAP_RECEIVED) asked_.clear();
    if (message.kind == KOBD_TAP_RECEIVED && is_set)
    {
        const Items items = ItemsOf(message);
        for (size_t i = 0; i + 1 < items.size(); i += 2) asked_[items[i].text] = items[i + 1].text;
    }
    kobd_bytes payload = message.payload;
    kobd_item result{};
    if (message.kind == KOBD_TAP_ANSWERED && is_set && kobd_bytes_next(&payload, &result) == 1 && result.number == 0)
        for (const auto& [name, value] : asked_)
            if (const auto known = values_.find(name); known != values_.end()) known->second = value;
}

std::vector<ValueChange> KnownValues::ChangesOf(const Options& options, const kobd_tapped& announcement)
{
    std::vector<ValueChange> changes;
    const Items items = ItemsOf(announcement);
    if (announcement.id == kEventObjectChanged && !items.empty())
    {
        const std::string& name = items[0].text;
        ValueChange change = {name, Find(values_, name), Find(asked_, name)};
        Values read;
        if (!change.now && ReadValues(options, {name}, &read).code == 0) change.now = Find(read, name);
        if (change.now && change.old) values_[name] = *change.now;
        changes.push_back(change);
    }
    if (items.size() < 2 || !items[1].number) return changes;
    std::vector<Row>& rows = rows_[items[0].text];
    if (announcement.id == kEventRowAdded || announcement.id == kEventSubRowAdded) rows.push_back({*items[1].number});
    if (announcement.id == kEventRowDeleted)
        std::erase_if(rows, [&](const Row& row) { return row.index == *items[1].number; });
    if (announcement.id != kEventTableChanged) return changes;
    Row* old = FindRow(&rows, *items[1].number);
    const std::optional<Row> now = ReadRow(options, items[0].text, *items[1].number);
    for (size_t i = 2; i < items.size(); ++i)
        if (items[i].tag == KOBD_TAG_COLUMN_NAME)
            changes.push_back(
                {items[i].text, FindColumn(old, items[i].text), FindColumn(now ? &*now : nullptr, items[i].text)});
    if (now && old != nullptr) *old = *now;
    if (now && old == nullptr) rows.push_back(*now);
    return changes;
}
}  // namespace kobd::client
