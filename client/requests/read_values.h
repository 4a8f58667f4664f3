// Values of objects by name.
#pragma once

#include <map>
#include <string>

#include "client/commands/commands.h"
#include "client/requests/request.h"

namespace kobd::client
{
using Values = std::map<std::string, std::string>;

// Reads the objects, in as many requests as that takes. Names that the daemon leaves out, which are
// unknown or could not be read, are not in `values`.
Response ReadValues(const Options& options, const Words& names, Values* values);
}  // namespace kobd::client
