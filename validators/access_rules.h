// The rows of access restriction and of parental control by days and times. Conventions in
// validators/check.h.
#pragma once

extern "C"
{
    // FwAccessRestrictionTable: "Name" of at most 32 characters that validNameRestriction takes, "Host"
    // an IPv4 or MAC address, "Weekdays" as in Mon,Tue (each day at most once), "TimeStart" not after
    // "TimeStop" within one day, as in 8:30. All are required. Stored rows are not compared.
    //   Blanks around these five fields are removed in the row, accepted or not.
    int validAccessRestriction(void* row);

    // Rows as in FwParentControlTable: the same, but "Name" may be anything or empty.
    int validParentControl(void* row);
}
