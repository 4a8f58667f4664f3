// What an import has to change, and whether the file may be imported at all.
#pragma once

#include <string>
#include <vector>

#include "client/arguments/assignment.h"
#include "client/state/router_state.h"
#include "client/state/settings_file.h"

namespace kobd::client
{
// A table whose rows differ from those of the file. The rows before the first difference stay; those behind it are
// deleted, and the file's are added. Where rows cannot be added and deleted, they take their values in place.
struct TablePlan
{
    const TableEntry* table;
    size_t line;
    std::vector<TableRow> old = {};        // rows that go
    std::vector<Assignments> wanted = {};  // rows that come

    bool InPlace() const { return !(table->Has(kAdd) && table->Has(kDel)); }
};

struct ImportPlan
{
    std::vector<const FileValue*> values = {};  // those that differ; they point into the file
    std::vector<TablePlan> tables = {};         // those that differ
};

// Compares the file with the router and checks by the dictionary all that differs. When there are errors nothing
// may be changed.
ImportPlan PlanImport(const SettingsFile& file, const RouterState& router, std::vector<LineError>* errors);
}  // namespace kobd::client
