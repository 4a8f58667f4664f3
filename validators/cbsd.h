// The installation parameters of a Citizens Broadband Radio Service device. All accept the empty text:
// the parameter is not given. Conventions in validators/check.h.
#pragma once

extern "C"
{
    // A decimal number with an optional sign and at most `places` digits behind its point, from
    // `minimum` to `maximum`. It is compared in single precision, so that 90.0000001 is 90. A text
    // without any digit, such as a lone sign, is 0.
    int validFloatAccuracy(const char* value, int places, float minimum, float maximum);

    // Degrees, -90 to 90 and -180 to 180, at most seven decimal places.
    int validCbsdLatitude(const char* value);
    int validCbsdLongitude(const char* value);

    // Whole numbers in digits only. There is no sign, so that a lower bound below 0 is never reached.
    int validCbsdHeight(const char* value);       // 0 to 10000
    int validCbsdHorAccuracy(const char* value);  // 0 to 50
    int validCbsdVerAccuracy(const char* value);  // 0 to 3
    int validCbsdAzimuth(const char* value);      // 0 to 359 degrees
    int validCbsdDowntilt(const char* value);     // -90 to 90 degrees
    int validCbsdGain(const char* value);         // -127 to 128 dBi
    int validCbsdEirp(const char* value);         // -127 to 47 dBm/10 MHz
    int valid_cbsd_beamwidth(const char* value);  // 0 to 360 degrees
}
