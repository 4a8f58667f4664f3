// The file in which a client lays the changes of a table set request.
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

// Reads the file whole; it is never changed nor removed. 0; 4 not a regular file, cannot be read,
// or got shorter meanwhile; 7 no memory for its size.
[[nodiscard]] int ChangeFileRead(const char* path, ChangeFile* file);
}  // namespace kobd
