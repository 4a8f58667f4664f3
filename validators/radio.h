// Checks of what clients may write for the radio: modes, locks to bands, channels, cells and
// tracking areas, transmit power. None asks the modem.
//
// Each is given a zero-terminated text and returns 0 to accept it or 2 to refuse it. What is not
// named below is refused, a missing text (nullptr) always.
#pragma once

extern "C"
{
    // "4G" or "5G".
    int validRadioPreferMode(const char* value);

    // "LTE_TD_pre" or "TD_GSM_pre", in any letter case. For the platform libraries.
    int validPreMode(const char* value);

    // "TD_LTE_auto", "Only_LTE", "Only_TD" or "Only_GSM", in any letter case. For the platform
    // libraries.
    int validErrValid(const char* value);

    // A command with a "/" among its first 63 characters.
    int validEventNotifyComd(const char* value);

    // Band locks: at most 16 different band numbers, each followed by ";" and each in the module's
    // list of supported LTE or NR bands; or the empty text, for no lock.
    int validlteBandLock(const char* value);
    int valid5gBandLock(const char* value);

    // The channel lock: one to five different EARFCNs and NR-ARFCNs, each followed by ";" and each
    // a downlink channel of a supported band. EARFCNs of band 1 (0 to 599) are refused.
    int validEarfcnlock(const char* value);

    // The cell lock: one to five different entries EARFCN,CELL, each followed by ";", the channel
    // in a supported LTE band and the physical cell identity 0 to 503. Entries count as different
    // when they are written differently.
    int validPcilock(const char* value);

    // At most eight tracking area codes from 1 to 65535 without leading zeros, each followed by
    // ";"; at most 48 characters; or the empty text. Codes may be repeated.
    int validTacLockList(const char* value);

    // 1 to 8.
    int validTacLockTimes(const char* value);

    // "0" for no limit, or "1," and a power from 0 to 23 dBm.
    int validLteTxpowerLimit(const char* value);
}
