// Settings of management, diagnosis and voice. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // The number of the APN, from 1, over which the TR-069 agent connects. Where there is one WAN
    // interface only 1 is accepted. Elsewhere it is one of the configured interfaces that carries the
    // default route, or whose profile is enabled or cannot be read.
    int validTr069BindApnIndex(const char* value);

    // A bandwidth in kilobits or megabits per second: "500K", "10M"; no leading zero.
    int validIperfUdpBandWidth(const char* value);

    // Any text without a ";".
    int validCommonStr(const char* value);

    // 1 to 1024 characters.
    int validDigitMap(const char* value);
}
