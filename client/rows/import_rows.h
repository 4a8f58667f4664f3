// Replacing the rows of one table.
#pragma once

#include "client/state/import_plan.h"

namespace kobd::client
{
// Gives the table the rows that are wanted. It adds the new rows, then deletes the old ones. Where a new row is
// refused, for example by a check that finds the old row beside it, it deletes the old rows first. When a new row is
// refused then, it adds the old rows again, under new indexes. The failure says whether that worked.
Failure ReplaceRows(const Options& options, const TablePlan& plan);
}  // namespace kobd::client
