// Running out of memory on purpose, for allocations that may fail (new with std::nothrow).
#pragma once

namespace kobd::test
{
// While one lives, so many blocks can still be had, by new and by new[]; negative: any number.
class MemoryLeft
{
public:
    explicit MemoryLeft(int blocks, int arrays = -1);
    ~MemoryLeft();
    MemoryLeft(const MemoryLeft&) = delete;
    MemoryLeft& operator=(const MemoryLeft&) = delete;
};
}  // namespace kobd::test
