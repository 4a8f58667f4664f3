// The cell lock. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // One to five different entries EARFCN,CELL, each followed by ";" ("1300,1;1300,2;"). The channel
    // lies in a supported LTE band; the physical cell identity is 0 to 503. Entries are different when
    // they are written differently.
    int validPcilock(const char* value);
}
