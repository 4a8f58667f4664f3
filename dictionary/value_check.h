// Judges proposed values against an object's type, limitation and validator.
#pragma once

#include <span>

#include "dictionary/records.h"

namespace kobd
{
// Returns 0 for a value that is accepted; 2 when the type's test refuses it, with a log line where the
// type has one; otherwise the validator's code. Without a descriptor every value is accepted.
int ParameterCheck(const char* value, const CheckDescriptor* check);

// Checks every pair of name and value in a payload whose form ObjSetStage has accepted. Stops at the first
// value that is refused and returns its code.
int ObjsParameterCheck(std::span<const char> payload);
}  // namespace kobd
