// Judges proposed values against an object's type, limitation and validator.
#pragma once

#include <span>

#include "dictionary/records.h"

namespace kobd
{
// 0 accepted; 2 refused by the type's test (with a log line where the type has one); otherwise the
// validator's code. No descriptor accepts everything. Changes nothing.
int ParameterCheck(const char* value, const CheckDescriptor* check);

// Checks all name and value pairs of a payload whose form ObjSetStage has accepted; stops at the
// first refusal and returns its code.
int ObjsParameterCheck(std::span<const char> payload);
}  // namespace kobd
