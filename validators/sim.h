// Checks of what clients may write for the SIM: PIN and PUK commands, PLMN and SIM lock. Only the
// form is judged; nothing is compared with a stored code.
//
// Each is given a zero-terminated text and returns 0 to accept it or 2 to refuse it. What is not
// named below is refused, a missing text (nullptr) always.
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

    // At most 18 different PLMN codes of 5 or 6 digits with ";" between them, the last one may be
    // followed by one too; or the empty text for no lock.
    int validLteSimlock(const char* value);
}
