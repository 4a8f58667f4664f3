// Replacing the rows of one table.
#pragma once

#include "client/state/import_plan.h"

namespace kobd::client
{
// Makes the rows of the table those that are wanted. New rows are added before old ones are deleted. Where that is
// refused, for example by a check that finds the old row beside the new one, old rows are deleted first; a refusal
// then puts them back, under new indexes. Where even that fails, the failure says so.
Failure ReplaceRows(const Options& options, const TablePlan& plan);
}  // namespace kobd::client
