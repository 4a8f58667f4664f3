// Gateways, and the servers that the router talks to. Conventions in validators/check.h. These checks
// write no lines of their own.
#pragma once

extern "C"
{
    // As validDmzIp (validators/lan.h), and not the text of networkLanSettingIp.
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
}
