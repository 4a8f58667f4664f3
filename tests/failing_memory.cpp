// Allocations that fail when a test says so.
#include "tests/failing_memory.h"

#include <cstddef>
#include <new>

namespace kobd::test
{
int memory_left = -1;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    if (kobd::test::memory_left == 0) return nullptr;
    if (kobd::test::memory_left > 0) --kobd::test::memory_left;
    return ::operator new(size);
}
