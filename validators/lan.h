// The router's own addressing, its servers and services. Checks that compare with another object
// read it with SnapshotRead, so that values sent in one request are judged together; an object that
// cannot be read, or holds more than an address can have, counts as empty. 0 accepts, 2 refuses;
// these write no lines of their own (conventions in validators/address.h).
#pragma once

extern "C"
{
    // 255.255.255.x with x one of 252, 248, 240, 224, 192, 128, 0. Any character may stand for a dot.
    int validLanMask(const char* value);

    // An address that validIpv4 takes, not in 10.254.254.x, and above the network address of
    // networkLanSettingMask.
    int validLanIp(const char* value);

    // An address that validIpv4 takes and that is not the text of networkLanSettingIp.
    int validExternIp(const char* value);

    // First and last address of the LAN's pool: the first three parts of networkLanSettingIp, start
    // not above networkLanSettingEnd (end not below networkLanSettingStart), and strictly between
    // the segment's network and broadcast address under networkLanSettingMask, by the last part.
    int validDhcpStart(const char* value);
    int validDhcpEnd(const char* value);

    // An address in the LAN's segment whose last part is neither 0 nor 255.
    int validDmzIp(const char* value);

    // 0 when the first three parts of both addresses agree under the mask, 2 when not or when one of
    // the texts does not have four parts. The fourth parts are not compared.
    int inSameSegment(const char* first, const char* second, const char* mask);

    // As validDmzIp, and not the text of networkLanSettingIp.
    int validWanGateway(const char* value);

    // The number of a configured APN profile, from 1, in digits; the profile must be enabled.
    int validDefaultGateway(const char* value);

    // 1 to 67 characters: an address that validAddressExzerobc takes or a name that checkDomain takes.
    int validVpnserver(const char* value);

    // An address that validIpv4 or validIpv6 takes, or a name that validDomain takes.
    int validWatchdogPingServer(const char* value);
    int validSnmpTrapServer(const char* value);

    // User and password of the upgrade server: at most 64 characters, and not empty unless
    // upgradeFtpUpgradeFolder begins with "http://" or "https://".
    int validFtpUsr(const char* value);
    int validFtpPwd(const char* value);

    // GMT, a sign and hh:mm: whole hours from 00:00 to 12:00, or one of the zones with a part of an
    // hour and GMT+13:00 that the table beside the function lists.
    int validSystemTimezone(const char* value);

    // The host of a dynamic DNS provider, one of 14, exactly.
    int validDdnsServiceProvider(const char* value);

    // Decimal numbers, white space allowed in front; -180 to 180, -90 to 90, any. An empty text is 0.
    int validGpsLongitude(const char* value);
    int validGpsLatitude(const char* value);
    int validGpsAltitude(const char* value);

    // The path of a file that exists; whether it may be read is not looked at.
    int validConfigFile(const char* value);
}
