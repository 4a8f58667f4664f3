// Domain names. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // At least two labels of 1 to 63 letters, digits and "-", of which none begins with "-"; the last
    // one has 2 to 6 letters.
    int validDomain(const char* text);

    // The same, but a scheme may stand in front, and any characters of a URL's user part.
    int checkDomain(const char* text);
}
