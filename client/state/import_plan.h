// What an import has to change, and whether the file may be imported at all.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "client/state/router_state.h"
#include "client/state/settings_file.h"

namespace kobd::client
{
using ColumnValues = std::vector<std::pair<std::string, std::string>>;

// A table whose rows are not those of the file. Rows that are the same stay; the others are deleted
// and added behind them. Where rows can neither be added nor deleted, all take their values in place.
struct TablePlan
{
    const TableEntry* table;
    size_t line;
    std::vector<TableRow> old = {};         // rows that go
    std::vector<ColumnValues> wanted = {};  // rows that come

    bool InPlace() const { return !(table->Has(kAdd) && table->Has(kDel)); }
};

struct ImportPlan
{
    std::vector<const FileValue*> values = {};  // those that differ; they point into the file
    std::vector<TablePlan> tables = {};         // likewise
};

// Compares the file with the router and checks all that differs by the dictionary. With an error
// nothing may be changed.
ImportPlan PlanImport(const SettingsFile& file, const RouterState& router, std::vector<LineError>* errors);
}  // namespace kobd::client
