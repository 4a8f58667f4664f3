// The rows of parental control by weekly spans of time. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // FwNewParentControlTable: "Name" of at most 32 characters that validNameRestriction takes, "Host" a
    // MAC address, "Time" a text that validTimeStr takes, "Enable" 0 or 1. No row of another index is
    // the same in every byte.
    int validNewParentControl(void* row);

    // 1 to 84 weekly spans with "," between them ("120823,340918").
    int validTimeStr(const char* text);

    // One weekly span: six digits, the first day and the last day (0 to 6 each), the start hour and the
    // end hour (00 to 23 each). Within one day the hours may not fall. The days may fall only to a last
    // day of 0.
    int validTimeSingle(const char* text);
}
