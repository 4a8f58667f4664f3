// Running out of memory on purpose, for allocations that may fail (new with std::nothrow).
#pragma once

namespace kobd::test
{
// Allocations that still succeed; negative: all do. The test that sets it puts -1 back.
extern int memory_left;
}  // namespace kobd::test
