// Allocations that fail when a test says so.
#include "tests/failing_memory.h"

#include <cstddef>
#include <new>

namespace
{
int blocks_left = -1;
int arrays_left = -1;

bool Take(int* left)
{
    if (*left > 0) --*left;
    return *left != 0;
}
}  // namespace

kobd::test::MemoryLeft::MemoryLeft(int blocks, int arrays)
{
    blocks_left = blocks < 0 ? blocks : blocks + 1;
    arrays_left = arrays < 0 ? arrays : arrays + 1;
}

kobd::test::MemoryLeft::~MemoryLeft() { blocks_left = arrays_left = -1; }

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    return Take(&blocks_left) ? ::operator new(size) : nullptr;
}

void* operator new[](size_t size, const std::nothrow_t&) noexcept
{
    return Take(&arrays_left) ? ::operator new[](size) : nullptr;
}
