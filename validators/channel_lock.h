// The channel lock. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // One to five different EARFCNs and NR-ARFCNs, each followed by ";" and each a downlink channel of a
    // band that the module supports ("1300;636000;"). EARFCNs of band 1 (0 to 599) are refused.
    int validEarfcnlock(const char* value);
}
