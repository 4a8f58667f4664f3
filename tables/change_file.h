// Reads the file in which a client gives the changes of a table set request.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace kobd
{
struct ChangeFile
{
    std::unique_ptr<char[]> bytes;
    size_t size = 0;

    std::span<const char> Items() const { return {bytes.get(), size}; }
};

// Reads the whole file, and neither changes nor removes it. Returns 0; 4 when it is not a regular file,
// cannot be read, or became shorter meanwhile; 7 when there is no memory for it, or when it is larger than
// the items of all rows of all tables.
[[nodiscard]] int ChangeFileRead(const char* path, ChangeFile* file);
}  // namespace kobd
