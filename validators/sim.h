// The commands and locks of the SIM: PIN, PUK, PLMN lock and SIM lock. Only the form is checked; nothing
// is compared with a stored code. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // FLAG,PIN: the flag 0 or 1 (lock off, on), the PIN of 4 to 8 digits.
    int validLockPin(const char* value);

    // A PIN of 4 to 8 digits.
    int validEnterPin(const char* value);

    // OLD,NEW: two PINs of 4 to 8 digits.
    int ValidVerifyPin(const char* value);

    // PUK,PIN: a PUK of 8 digits and the new PIN of 4 to 8.
    int validEnterPuk(const char* value);

    // One PLMN code of 5 or 6 digits, or the empty text for no lock.
    int validLtePlmnlock(const char* value);

    // At most 18 different PLMN codes of 5 or 6 digits with ";" between them, and perhaps one ";" behind
    // the last; or the empty text for no lock.
    int validLteSimlock(const char* value);
}
