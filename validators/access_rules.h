// The checks of rules that hold at certain times of the week: access restriction and the two forms
// of parental control. Conventions of rows as in validators/filters.h.
#pragma once

#include <cstddef>

namespace kobd
{
inline constexpr size_t kRuleNameMax = 32;  // characters of the "Name" of a rule
}

extern "C"
{
    // FwAccessRestrictionTable: "Name" of at most 32 allowed characters, "Host" an IPv4 or MAC
    // address, "Weekdays" as in Mon,Tue (each day once), "TimeStart" not after "TimeStop" within
    // one day, as in 8:30. All are required.
    //   Blanks around these five fields are removed in the row, accepted or not.
    int validAccessRestriction(void* row);

    // Rows as in FwParentControlTable: the same, but "Name" may be anything or empty.
    int validParentControl(void* row);

    // Predicate, 1 or 0: a name of 1 to 128 printable ASCII characters without the space and
    // without any of \ ` % ' = " +
    int validNameRestriction(const char* name);

    // FwNewParentControlTable: "Name" of at most 32 allowed characters, "Host" a MAC address,
    // "Time" a time value, "Enable" 0 or 1; no other row is the same in every byte.
    int validNewParentControl(void* row);

    // A time value: 1 to 84 weekly spans joined by ",". 0 accepts, 2 refuses.
    int validTimeStr(const char* text);

    // One weekly span: six digits, first day and last day (0 to 6 each), start hour and end hour
    // (two digits, 00 to 23 each). Within one day the hours may not fall; the days may fall only
    // to a last day of 0. 0 accepts, 2 refuses.
    int validTimeSingle(const char* text);
}
