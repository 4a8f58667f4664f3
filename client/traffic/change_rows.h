// The rows of a table set, whose request names only the change file that they stand in.
#pragma once

#include <optional>
#include <string>

#include "client/library/kobd_client.h"

namespace kobd::client
{
bool IsTableSet(const kobd_tapped& message);

// The items of the change file. Nothing when it cannot be read: its client removes it as soon as the answer has come,
// and it belongs to the client's user.
std::optional<std::string> ReadChangeFile(const kobd_tapped& table_set);
}  // namespace kobd::client
