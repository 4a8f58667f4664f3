// The names of access rules and of parental control rules. Conventions in validators/check.h.
#pragma once

#include <cstddef>

namespace kobd
{
inline constexpr size_t kRuleNameMax = 32;  // characters of the "Name" of a rule
}

extern "C"
{
    // Predicate: a name of 1 to 128 printable ASCII characters without the space and without any of
    // \ ` % ' = " +
    int validNameRestriction(const char* name);
}
