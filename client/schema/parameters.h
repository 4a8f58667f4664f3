// The parameters of an address, as OpenAPI describes them.
#pragma once

#include <string>

#include "client/schema/value_schema.h"

namespace kobd::client
{
// Of a path such as /api/tables/{table}, and of a query: names with a blank between them.
Json ParametersOf(const std::string& path, const std::string& query);
}  // namespace kobd::client
