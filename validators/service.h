// Time zone, position, dynamic DNS, configuration file and Wi-Fi keys. Conventions in
// validators/check.h. These checks write no lines.
#pragma once

extern "C"
{
    // GMT, a sign and hh:mm: whole hours from 00:00 to 12:00, or one of the zones that the table beside
    // the function lists, which have a part of an hour or 13 hours.
    int validSystemTimezone(const char* value);

    // The host of a dynamic DNS provider, one of 14, exactly.
    int validDdnsServiceProvider(const char* value);

    // Decimal numbers, white space allowed in front: -180 to 180, -90 to 90, any. The empty text is 0.
    int validGpsLongitude(const char* value);
    int validGpsLatitude(const char* value);
    int validGpsAltitude(const char* value);

    // The path of a file that exists. Whether it may be read is not looked at.
    int validConfigFile(const char* value);

    // A key that does not begin with "0x" in either letter case and holds no space. Its length is left
    // to the object's limitation.
    int validWifiPassword(const char* text);
}
