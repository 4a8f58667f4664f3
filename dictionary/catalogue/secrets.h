// Which objects and columns hold secrets: passwords, keys and PINs. Whoever keeps or shows what was set says only that
// these have changed.
#pragma once

#include <algorithm>
#include <string_view>

namespace kobd
{
inline constexpr std::string_view kSecretObjects[] = {
    // Mobile network
    "APNPassword", "apnCurrentPassword", "apnImsAuthPassword", "apnProfileAuthPassword", "ChangePIN", "lteEnterpin",
    "lteEnterpuk", "lteLockpin", "lteModifypin", "PINNumber", "PINOldNumber", "PINUnlock", "PUKNumber", "PUKUnlock",
    // WAN and tunnels
    "ipsecVPNPassword", "l2tpVPNPassword", "l2tpVPNPSK", "networkAppAppMecKey", "networkAppMecPassword",
    "networkAppVxlanACPassword", "networkAppVxlanKey", "networkAppVxlanPassword", "networkDdnsPassword",
    "networkVpnSettingIpsecPassword", "networkVpnSettingPassword", "networkVpnSettingTunnelPassword", "pptpVPNPassword",
    "WANPPPOEPassword",
    // Wi-Fi
    "wifi5gWpsClientPin", "wifi5gWpsRouterPin", "wifiKey0", "wifiKey1", "wifiKey2", "wifiKey3", "wifiKey4",
    "wifiWdsKey", "wifiWpsClientPin", "wifiWpsRouterPin",
    // Management
    "snmpPrivateCommunity", "snmpPublicCommunity", "snmpTrapCommunity", "tr069ConnectionRequestPassword",
    "tr069CpeCertPass", "tr069ServerPassword", "tr069STUNPassword", "TrAdminPasswordChange", "TrUserPasswordChange",
    "upgradeFtpModulePassword", "upgradeFtpPassword", "voipAccountPassword", "WebPass", "webAdminPasswordChange",
    "webUserPasswordChange"};

inline constexpr std::string_view kSecretColumns[] = {"Key",          "PIN",         "PINCheck",  "Password",
                                                      "Password1",    "Password2",   "Password3", "Password4",
                                                      "Sae_password", "ServerSecret"};

constexpr bool IsSecretObject(std::string_view name)
{
    return std::ranges::find(kSecretObjects, name) != std::ranges::end(kSecretObjects);
}

constexpr bool IsSecretColumn(std::string_view name)
{
    return std::ranges::find(kSecretColumns, name) != std::ranges::end(kSecretColumns);
}
}  // namespace kobd
