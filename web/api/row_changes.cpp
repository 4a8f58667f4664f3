#include "web/api/row_changes.h"

namespace kobd::web
{
namespace
{
// Sets the columns whatever the dictionary says: the router has shown these values before.
bool SetBack(const std::string& table, int32_t index, const Values& columns)
{
    kobd_changes* changes = kobd_changes_new();
    bool added = changes != nullptr;
    for (const auto& [column, value] : columns)
        added = added && kobd_changes_add(changes, table.c_str(), index, column.c_str(), value.c_str()) == 0;
    const bool set = added && kobd_changes_set(Bus(), changes, KOBD_UNCHECKED) == 0;
    kobd_changes_free(changes);
    return set;
}

// Whether the set itself answers it: there is no such table, row or operation. A row that is too long for a reply is no
// obstacle to the daemon.
bool IsLeftToTheSet(int code)
{
    return code == KOBD_NOT_FOUND || code == kNoSuchRow || code == kNoSuchOperation || code == KOBD_BUFFER_LIMIT;
}
}  // namespace

int ReadRow(const std::string& table, int32_t index, Values* row)
{
    const auto take = [](void* context, const char* column, const char* value)
    { (*static_cast<Values*>(context))[column] = value; };
    row->clear();
    return kobd_row_get(Bus(), table.c_str(), index, take, row);
}

RowChanges::RowChanges() : changes_(kobd_changes_new())
{
    if (changes_ == nullptr) throw Problem{503, "There is no memory left."};
}

void RowChanges::Add(const std::string& table, int32_t index, const Json& columns)
{
    if (!columns.is_object()) throw Problem{422, table + ": a row is an object of columns and values."};
    for (const auto& [column, value] : columns.items())
    {
        const std::string text = ValueIn(value, table + " " + column);
        if (const int code = kobd_changes_add(changes_.get(), table.c_str(), index, column.c_str(), text.c_str()))
            throw Problem{code == KOBD_BUFFER_LIMIT ? 413 : 503, table + " " + column + ": " + kobd_result_text(code)};
        rows_[{table, index}][column] = text;
    }
}

void RowChanges::Store()
{
    std::map<Address, Values> before;
    for (const auto& [address, columns] : rows_)
    {
        const int code = ReadRow(address.first, address.second, &before[address]);
        if (code == kNoSuchRow) before.erase(address);
        if (code == 0 || IsLeftToTheSet(code)) continue;
        Problem problem = ProblemOfCall(code);
        problem.detail += "; the row cannot be read, and nothing was set";
        throw problem;
    }
    const int code = kobd_changes_set(Bus(), changes_.get(), 0);
    if (code == 0) return;
    Problem problem = ProblemOfCall(code);
    if (!IsRefusal(code) && kobd_answered(Bus()) != 0) TakeBack(before, &problem);
    throw problem;
}

void RowChanges::TakeBack(const std::map<Address, Values>& before, Problem* problem) const
{
    Json restored = Json::array();
    Json left = Json::array();
    for (const auto& [address, columns] : rows_)
    {
        if (!before.contains(address)) continue;  // there was no such row
        const Values& old = before.at(address);
        Values now;
        bool stays = ReadRow(address.first, address.second, &now) != 0 || old.empty();  // it cannot be compared
        Values changed;
        for (const auto& [column, value] : columns)
        {
            if (!old.contains(column) || !now.contains(column) || old.at(column) == now.at(column)) continue;
            if (ReadsAs(kobd_describe_column(address.first.c_str(), column.c_str()), value, now.at(column)))
                changed[column] = old.at(column);
            else
                stays = true;  // another program has changed it since
        }
        if (!changed.empty() && !SetBack(address.first, address.second, changed)) stays = true;
        if (stays || !changed.empty())
            (stays ? left : restored).push_back(address.first + " " + std::to_string(address.second));
    }
    AddTakenBack(restored, left, problem);
}
}  // namespace kobd::web
