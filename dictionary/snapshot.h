// Keeps the values of the current set request until it ends, and reads an object as the request will leave
// it. Only one request is handled at a time; nothing is staged outside one.
#pragma once

#include <span>
#include <string_view>

#include "dictionary/records.h"

namespace kobd
{
// Keeps a copy of `value` as the object's staged value, in place of an earlier one of the same
// request. Returns 0; 7 when there is no memory, and the earlier value stays.
int StageValue(const ObjDef& object, std::string_view value);

// Releases every staged value.
void StagedValuesFree();

// As SnapshotGet (platform/kobd_exports.h), but never writes past `value`, which holds at least one
// byte. A staged value comes from a client and may be longer than any buffer of a validator.
// Returns 0; 1 for an unknown name and a table; 11 when the value does not fit; 16 when there is nothing to
// read; else the accessor's code. `value` is the empty text unless the code is 0.
int SnapshotRead(const char* name, std::span<char> value);
}  // namespace kobd
