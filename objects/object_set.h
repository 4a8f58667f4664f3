// The first pass of an object set.
#pragma once

#include <span>

namespace kobd
{
// Checks the form of a set request's payload and stages its values. Returns 0; 1 for an unknown name; 2 for
// a wrong form and for a table; 7 without memory; 10 for a read-only object. Values staged before a failure
// stay staged: call StagedValuesFree on every path.
int ObjSetStage(std::span<const char> payload);
}  // namespace kobd
