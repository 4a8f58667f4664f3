#include "web/events/known_values.h"

#include <vector>

#include "web/api/bus.h"
#include "web/api/describe.h"
#include "web/api/row_changes.h"

namespace kobd::web
{
namespace
{
constexpr uint16_t kRequestClass = 1;

Json TextOrNull(const std::map<std::string, std::string>& values, const std::string& name, bool secret)
{
    const auto found = values.find(name);
    if (found == values.end()) return {};
    return secret ? kMasked : found->second;
}

bool IsSet(const kobd_tapped& message)
{
    return message.message_class == kRequestClass && (message.id == KOBD_SET || message.id == KOBD_SET_SILENT);
}

std::string Text(const kobd_item& item) { return item.text != nullptr ? item.text : ""; }

// Nothing when it cannot be read now.
Values ReadValue(const std::string& name)
{
    try
    {
        return ReadValues({name});
    }
    catch (const Problem&)
    {
        return {};
    }
}

bool IsCellular(const kobd_table_description& table) { return std::string_view(table.name).starts_with("cellular"); }
}  // namespace

void KnownValues::Forget()
{
    knows_ = false;
    values_.clear();
    rows_.clear();
}

void KnownValues::Read()
{
    Forget();
    std::vector<std::string> names;
    const kobd_description* object = nullptr;
    for (size_t i = 0; ObjectAt(i, &object); ++i)
        if (object != nullptr && object->readable != 0) names.emplace_back(object->name);
    values_ = ReadValues(names);
    std::vector<const char*> tables;
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
        if (table->can_list != 0 && !IsCellular(*table)) tables.push_back(table->name);
    const auto take = [](void* context, const char* table, int32_t index, const char* const* columns,
                         const char* const* values, size_t count)
    {
        Row& row = (*static_cast<decltype(rows_)*>(context))[{table, index}];
        for (size_t i = 0; i < count; ++i) row[columns[i]] = values[i];
    };
    Demand(kobd_rows_of(Bus(), tables.data(), tables.size(), take, &rows_));
    knows_ = true;
}

void KnownValues::Note(const kobd_tapped& message)
{
    if (message.kind == KOBD_TAP_RECEIVED) asked_.clear();
    kobd_bytes payload = message.payload;
    kobd_item item = {};
    kobd_item value = {};
    if (message.kind == KOBD_TAP_RECEIVED && IsSet(message))
        while (kobd_bytes_next(&payload, &item) == 1 && kobd_bytes_next(&payload, &value) == 1)
            asked_[Text(item)] = Text(value);
    if (message.kind == KOBD_TAP_ANSWERED && IsSet(message) && kobd_bytes_next(&payload, &item) == 1 &&
        item.number == 0)
        for (const auto& [name, asked] : asked_)
            if (const auto known = values_.find(name); known != values_.end()) known->second = asked;
    if (message.kind == KOBD_TAP_ANSWERED) asked_.clear();  // what is announced from now on is another change
}

KnownValues::Event KnownValues::EventOf(uint16_t id, kobd_bytes payload)
{
    if (id == kSetFinished) return {"finished"};
    if (id != kObjectChanged) return RowEvent(id, payload);
    kobd_item item = {};
    if (kobd_bytes_next(&payload, &item) != 1) return {};
    return {"object", ChangeOf(Text(item))};
}

// What the set in hand did not say, somebody else may have changed: it is read.
Json KnownValues::ChangeOf(const std::string& name)
{
    const kobd_description* object = kobd_describe(name.c_str());
    const bool secret = object != nullptr && object->secret != 0;
    Json change = {{"name", name}};
    if (!knows_) return change;
    Values now = asked_;
    if (!now.contains(name) && object != nullptr && object->readable != 0) now = ReadValue(name);
    change["old"] = TextOrNull(values_, name, secret);
    change["new"] = TextOrNull(now, name, secret);
    if (now.contains(name) && values_.contains(name)) values_[name] = now[name];
    return change;
}

KnownValues::Event KnownValues::RowEvent(uint16_t id, kobd_bytes payload)
{
    kobd_item table = {};
    kobd_item index = {};
    if (kobd_bytes_next(&payload, &table) != 1 || kobd_bytes_next(&payload, &index) != 1) return {};
    Event event = {"row", {{"table", Text(table)}, {"index", index.number}}};
    const std::pair row = {Text(table), index.number};
    event.data["change"] = id == kRowsChanged ? "set" : id == kRowDeleted ? "deleted" : "added";
    if (id == kRowDeleted) rows_.erase(row);
    if (id == kRowAdded || id == kSubRowAdded) rows_[row] = {};
    if (id == kSubRowAdded && kobd_bytes_next(&payload, &index) == 1) event.data["parent"] = Text(index);
    if (id == kRowsChanged) event.data["columns"] = ChangesOfRow(row.first, row.second, payload);
    return event;
}

Json KnownValues::ChangesOfRow(const std::string& table, int32_t index, kobd_bytes columns)
{
    Row now;
    if (knows_) ReadRow(table, index, &now);  // empty: it is gone again, or cannot be read
    Row& old = rows_[{table, index}];
    Json changes = Json::object();
    kobd_item column = {};
    while (kobd_bytes_next(&columns, &column) == 1)
    {
        const kobd_description* description = kobd_describe_column(table.c_str(), Text(column).c_str());
        const bool secret = description != nullptr && description->secret != 0;
        changes[Text(column)] = {{"old", TextOrNull(old, Text(column), secret)},
                                 {"new", TextOrNull(now, Text(column), secret)}};
    }
    if (!now.empty()) old = std::move(now);
    return changes;
}
}  // namespace kobd::web
