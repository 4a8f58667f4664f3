// Comparing and checking.
#include "client/state/import_plan.h"

#include <algorithm>
#include <map>

#include "client/dictionary/column_value.h"
#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
using FirstLines = std::map<std::string, size_t>;  // where a name stood first

// Whether the name is new. Adds an error when it is not.
bool IsFirst(const std::string& name, size_t line, FirstLines* lines, LineErrors* errors)
{
    const auto [found, fresh] = lines->emplace(name, line);
    if (!fresh) errors->emplace(line, LineError(name + " is already in line " + std::to_string(found->second), name));
    return fresh;
}

std::string WhyNotSet(const FileValue& value)
{
    const std::string wrong = WhatIsWrong(value.name, value.value);
    if (!wrong.empty()) return wrong;
    if (!IsExported(*FindObject(value.name))) return value.name + " is not part of an export; use kobctl set";
    return FitsOneRequest(SetItems({{value.name, value.value}})) ? "" : TooLarge(value.name);
}

void PlanValues(const SettingsFile& file, const RouterState& router, ImportPlan* plan, LineErrors* errors)
{
    FirstLines lines;
    for (const FileValue& value : file.values)
    {
        if (!IsFirst(value.name, value.line, &lines, errors)) continue;
        const auto present = router.values.find(value.name);
        if (present != router.values.end() && present->second == value.value) continue;
        if (const std::string wrong = WhyNotSet(value); !wrong.empty())
            errors->emplace(value.line, LineError(wrong, value.name, value.value));
        else
            plan->values.push_back(&value);
    }
}

// A text column that the file leaves out becomes empty; a number that it leaves out keeps its value.
Assignments WantedOf(const TableEntry& table, const FileRow& row)
{
    Assignments wanted;
    for (const ColumnDef& column : table.layout.columns)
    {
        if (!IsExported(table, column)) continue;
        const FileValue* found = FindNamed(row, column.name);
        if (found != nullptr)
            wanted.push_back({column.name, found->value});
        else if (!JudgeCell(table, column.name, ""))
            wanted.push_back({column.name, ""});
    }
    return wanted;
}

// Whether the value is an integer for a flag. A person may set a flag only to 0 or 1. But other modules set flags to
// other integers, which the daemon accepts, so that an export has them.
bool IsStoredFlag(const TableEntry& table, const FileValue& value)
{
    const ColumnDef* column = FindColumn(table, value.name);
    const auto number = ReadInteger(value.value, INT32_MIN, INT32_MAX);
    return column != nullptr && column->type == VT_BOOL && number && value.value == std::to_string(*number);
}

void CheckRow(const TableEntry& table, const FileRow& row, LineErrors* errors)
{
    FirstLines lines;
    for (const FileValue& value : row)
    {
        std::string wrong =
            IsStoredFlag(table, value) ? "" : JudgeCell(table, value.name, value.value).Text(value.name, value.value);
        const ColumnDef* column = FindColumn(table, value.name);
        if (wrong.empty() && column->alias_of != nullptr)
            wrong = value.name + " is another name of " + column->alias_of;
        if (wrong.empty() && !IsFirst(value.name, value.line, &lines, errors)) continue;
        if (!wrong.empty())
            errors->emplace(value.line, LineError(std::string(table.name) + ": " + wrong, value.name, value.value));
    }
}

std::string WhyNoTable(const FileTable& from, const TableEntry* table)
{
    if (table == nullptr) return NoSuchName("table", from.name);
    if (table->list_of != std::string_view(table->name))
        return from.name + " is another name of the rows of " + table->list_of;
    return IsExported(*table) ? "" : from.name + " cannot be set";
}

// Why the table cannot have so many rows; the empty text when it can.
std::string WhyNotSoMany(const TableEntry& table, size_t present, size_t wanted)
{
    const std::string name = table.name;
    if (wanted > table.max_rows)
        return name + " holds " + std::to_string(table.max_rows) + " rows, the file has " + std::to_string(wanted);
    if (wanted == present || (table.Has(kAdd) && table.Has(kDel))) return "";
    return name + " has " + std::to_string(present) + " rows, the file has " + std::to_string(wanted) +
           ", and its rows cannot be added and deleted";
}

// Whether a row that is set in place differs from the file's.
bool Differs(const TablePlan& plan)
{
    for (size_t i = 0; i < std::min(plan.old.size(), plan.wanted.size()); ++i)
        if (!Missing(plan.old[i], plan.wanted[i]).empty()) return true;
    return false;
}

void PlanTable(const FileTable& from, const RouterState& router, ImportPlan* plan, LineErrors* errors)
{
    const TableEntry* table = FindTable(from.name);
    if (const std::string why = WhyNoTable(from, table); !why.empty())
        return (void)errors->emplace(from.line, LineError(why, from.name));
    const auto rows = router.rows.find(from.name);
    const std::vector<Row> present = rows != router.rows.end() ? rows->second : std::vector<Row>();
    if (const std::string why = WhyNotSoMany(*table, present.size(), from.rows.size()); !why.empty())
        errors->emplace(from.line, LineError(why, from.name));
    TablePlan one = {table, from.line};
    size_t next = 0;  // row of the file
    for (const Row& row : present)
        if (!one.InPlace() && next < from.rows.size() && Missing(row, WantedOf(*table, from.rows[next])).empty())
            ++next;
        else
            one.old.push_back(row);
    for (; next < from.rows.size(); ++next)
    {
        one.wanted.push_back(WantedOf(*table, from.rows[next]));
        const bool stays = one.InPlace() && next < one.old.size() && Missing(one.old[next], one.wanted.back()).empty();
        if (!stays) CheckRow(*table, from.rows[next], errors);
    }
    if (!one.InPlace() ? !one.old.empty() || !one.wanted.empty() : Differs(one)) plan->tables.push_back(std::move(one));
}
}  // namespace

Assignments Missing(const Row& row, const Assignments& wanted)
{
    Assignments missing;
    for (const Assignment& value : wanted)
        if (row.ValueOf(value.name) != value.value) missing.push_back(value);
    return missing;
}

ImportPlan PlanImport(const SettingsFile& file, const RouterState& router, LineErrors* errors)
{
    ImportPlan plan;
    PlanValues(file, router, &plan, errors);
    FirstLines lines;
    for (const FileTable& table : file.tables)
        if (IsFirst(table.name, table.line, &lines, errors)) PlanTable(table, router, &plan, errors);
    return plan;
}
}  // namespace kobd::client
