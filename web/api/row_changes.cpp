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
}  // namespace

Values ReadRow(const std::string& table, int32_t index)
{
    Values row;
    const auto take = [](void* context, const char* column, const char* value)
    { (*static_cast<Values*>(context))[column] = value; };
    if (kobd_row_get(Bus(), table.c_str(), index, take, &row) != 0) row.clear();
    return row;
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
    for (const auto& [address, columns] : rows_) before[address] = ReadRow(address.first, address.second);
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
        const Values& old = before.at(address);
        const Values now = ReadRow(address.first, address.second);
        Values changed;
        for (const auto& [column, value] : columns)
            if (old.contains(column) && now.contains(column) && old.at(column) != now.at(column))
                changed[column] = old.at(column);
        const std::string name = address.first + " " + std::to_string(address.second);
        if (old.empty() || now.empty())
            left.push_back(name);  // nobody knows: it cannot be read
        else if (!changed.empty())
            (SetBack(address.first, address.second, changed) ? restored : left).push_back(name);
    }
    problem->more["restored"] = restored;
    problem->more["left"] = left;
    problem->detail += left.empty() ? "; all is as before" : "; not all could be set back";
}
}  // namespace kobd::web
