// What an import has to change, and whether the file may be imported at all.
#pragma once

#include <vector>

#include "client/state/settings_file.h"

namespace kobd::client
{
// A table whose rows differ from those of the file. Rows that stand in the file in the same order stay; the others are
// deleted, and the file's rows behind the last of those are added. Where rows cannot be added and deleted, they take
// their values in place.
struct TablePlan
{
    const TableEntry* table;
    size_t line;
    std::vector<Row> old = {};             // rows that go
    std::vector<Assignments> wanted = {};  // rows that come

    bool InPlace() const { return !(table->Has(kAdd) && table->Has(kDel)); }
};

struct ImportPlan
{
    std::vector<const FileValue*> values = {};  // those that differ; they point into the file
    std::vector<TablePlan> tables = {};         // those that differ
};

// The wanted values that the row does not have yet. Where there are none the row is not sent: many checks refuse an
// empty row, although routers have empty rows.
Assignments Missing(const Row& row, const Assignments& wanted);

// Compares the file with the router, and checks by the dictionary what differs. After errors nothing may be changed. Of
// a router that could not be read nothing is known: then all that the file says differs.
ImportPlan PlanImport(const SettingsFile& file, const RouterState& router, LineErrors* errors);
}  // namespace kobd::client
