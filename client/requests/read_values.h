// Values of objects by name.
#pragma once

#include <map>
#include <string>

#include "client/arguments/words.h"
#include "client/requests/request.h"

namespace kobd::client
{
using Values = std::map<std::string, std::string>;

// Reads the objects, in as many requests as that takes. `values` then lacks the names that the daemon leaves
// out: those that are unknown or could not be read.
Response ReadValues(const Options& options, const Words& names, Values* values);
}  // namespace kobd::client
