// Reading an object as the set request in hand will leave it.
#pragma once

#include <span>

namespace kobd
{
// As SnapshotGet (platform/kobd_exports.h), but never writes past `value`, which holds at least one
// byte. A staged value comes from a client and may be longer than any buffer of a validator.
// 0; 1 unknown or a table; 11 the value does not fit; 16 nothing to read; else the accessor's code.
// With a code other than 0, `value` is the empty text.
int SnapshotRead(const char* name, std::span<char> value);
}  // namespace kobd
