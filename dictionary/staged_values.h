// The values of the set request in hand. One request at a time; empty outside one.
#pragma once

#include <string_view>

#include "dictionary/records.h"

namespace kobd
{
// Keeps a copy of `value` as the object's staged value, in place of an earlier one of the same
// request. 0, or 7 when there is no memory; then the earlier one stays.
int StageValue(const ObjDef& object, std::string_view value);

// Releases every staged value.
void StagedValuesFree();
}  // namespace kobd
