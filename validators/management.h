// Checks of management, diagnostic and voice settings.
//
// Each is given a zero-terminated text and returns 0 to accept it or 2 to refuse it. A missing text
// (nullptr) is refused.
#pragma once

extern "C"
{
    // The APN, counted from 1, over which the TR-069 agent connects: 1 where there is only one WAN
    // interface; else one of those configured that carries the default route, is enabled, or has
    // no profile to say that it is not.
    int validTr069BindApnIndex(const char* value);

    // A bandwidth in kilobits or megabits per second: "500K", "10M"; no leading zero.
    int validIperfUdpBandWidth(const char* value);

    // Any text without a ";".
    int validCommonStr(const char* value);

    // 1 to 1024 characters.
    int validDigitMap(const char* value);
}
