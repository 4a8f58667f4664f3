// Dump files that the daemon writes on request and leaves to the client.
#pragma once

#include <string>

namespace kobd::client
{
// Appends what the open file holds from its place on. False with errno when it cannot be read.
[[nodiscard]] bool ReadAll(int file, std::string* bytes);

// Reads the dump file whole and removes it. The path comes from whoever answered on the bus, so
// anything but a plain file under a dump file's name is neither read nor removed, and no link is
// followed. The error, or the empty text.
[[nodiscard]] std::string TakeDumpFile(const std::string& path, std::string* bytes);
}  // namespace kobd::client
