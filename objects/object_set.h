// The first pass of an object set.
#pragma once

#include <span>

namespace kobd
{
// Checks the form of a set request's payload and stages its values. 0; 1 unknown name; 2 wrong
// form or a table; 7 no memory; 10 read-only. What was staged before a failure stays staged: call
// StagedValuesFree on every path.
int ObjSetStage(std::span<const char> payload);
}  // namespace kobd
