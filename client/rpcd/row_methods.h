// The methods of rpcd about rows of tables. Each takes checked arguments and returns the reply.
#pragma once

#include "client/rpcd/arguments.h"

namespace kobd::client
{
Json RowsReply(const Options& options, const Json& arguments, bool secrets);
Json ReadTableRows(const Options& options, const Json& arguments);
Json SetRow(const Options& options, const Json& arguments);
Json AddNewRow(const Options& options, const Json& arguments);
Json DeleteOneRow(const Options& options, const Json& arguments);
Json CheckRow(const Options& options, const Json& arguments);
}  // namespace kobd::client
