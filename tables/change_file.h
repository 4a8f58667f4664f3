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

// Reads the file whole; it is never changed nor removed. 0; 4 it is no regular file, cannot be read, or
// got shorter meanwhile; 7 there is no memory for it, or it is larger than all rows of all tables need.
[[nodiscard]] int ChangeFileRead(const char* path, ChangeFile* file);
}  // namespace kobd
