// The rows of the speed dial numbers. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // SpeedDialTable: "SpeedDialNumber" is 1 to 99 in one or two digits, "ActureNumber" at most 32 of
    // the keys of a telephone, "Description" at most 31 of the characters that the source file lists.
    // No row of another index has the same number; 5 and 05 are the same.
    int speedDialListValid(void* row);
}
