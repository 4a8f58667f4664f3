// The radio's mode, tracking areas and transmit power, and the command that events run. The locks to
// bands, channels and cells have files of their own. None asks the modem. Conventions in
// validators/check.h.
#pragma once

extern "C"
{
    // "4G" or "5G".
    int validRadioPreferMode(const char* value);

    // "LTE_TD_pre" or "TD_GSM_pre", in any letter case. Only the platform libraries call it.
    int validPreMode(const char* value);

    // "TD_LTE_auto", "Only_LTE", "Only_TD" or "Only_GSM", in any letter case. Only the platform
    // libraries call it.
    int validErrValid(const char* value);

    // A command with a "/" among its first 63 characters.
    int validEventNotifyComd(const char* value);

    // At most eight tracking area codes from 1 to 65535 without leading zeros, each followed by ";", in
    // at most 48 characters; or the empty text. Codes may be repeated.
    int validTacLockList(const char* value);

    // 1 to 8.
    int validTacLockTimes(const char* value);

    // "0" for no limit, or "1," and a power from 0 to 23 dBm.
    int validLteTxpowerLimit(const char* value);
}
