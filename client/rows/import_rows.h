// Replacing the rows of one table.
#pragma once

#include <string>

#include "client/state/import_plan.h"

namespace kobd::client
{
// Makes the rows of the table those that are wanted. What went wrong, or the empty text. New rows are
// added before old ones are deleted; only where that is refused, as by a check that finds the old row
// beside the new one, the other way round, and then a refusal puts the old rows back, under new
// indexes. Where even that failed, the text says which.
std::string ReplaceRows(const Options& options, const TablePlan& plan);
}  // namespace kobd::client
