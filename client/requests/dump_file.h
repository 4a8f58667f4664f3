// Dump files that the daemon writes on request and leaves to the client.
#pragma once

#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
// Reads the dump file that the reply names whole and removes it. Anybody on the bus may have named it, so anything
// but a plain file with the name of a dump file is neither read nor removed, and no link is followed.
Failure TakeDumpFile(const Response& response, std::string* bytes);
}  // namespace kobd::client
