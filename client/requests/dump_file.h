// Dump files that the daemon writes on request and leaves to the client.
#pragma once

#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
// Reads the whole dump file that the reply names, and removes it. Another program may have sent the reply: only a plain
// file with the name of a dump file is read and removed, and no link is followed.
Failure TakeDumpFile(const Response& response, std::string* bytes);
}  // namespace kobd::client
