// Gateways, and the servers that the router talks to.
#include "validators/wan.h"

#include <cstdio>
#include <cstring>

#include "dictionary/records.h"
#include "dictionary/snapshot.h"
#include "platform/connection.h"
#include "platform/nvram.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/check.h"
#include "validators/domain.h"
#include "validators/lan.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr size_t kVpnServerMax = 67;    // characters
constexpr size_t kCredentialMax = 64;   // characters
constexpr size_t kFolderBuffer = 1024;  // bytes; the folder's value has 512 characters at most
constexpr int kSchemeBuffer = 10;       // bytes; longer schemes are cut, and none of those is known
constexpr size_t kKeyBuffer = 32;       // bytes, "apn%d_enable" with any number
constexpr size_t kEnableBuffer = 8;     // bytes; what is longer than "1" is cut, never to "1"

uint32_t ProfileCount()
{
    char count[kValueBuffer] = {};  // the room of any get accessor
    getWanSetCount_net(count);
    return ReadDigits(count).value_or(0);
}

bool ProfileEnabled(uint32_t profile)
{
    char key[kKeyBuffer];
    snprintf(key, sizeof key, "apn%u_enable", profile);
    char enable[kEnableBuffer] = {};
    nv_get(key, enable, sizeof enable);
    return strcmp(enable, "1") == 0;
}

// The upgrade folder's scheme decides whether its server may go without user and password.
bool UpgradeNeedsCredentials()
{
    char folder[kFolderBuffer];
    static_cast<void>(SnapshotRead("upgradeFtpUpgradeFolder", folder));  // empty when it cannot be read
    char scheme[kSchemeBuffer];
    split_str_by_sep(folder, "://", scheme, kSchemeBuffer);
    return strcmp(scheme, "http") != 0 && strcmp(scheme, "https") != 0;
}
}  // namespace

int validWanGateway(const char* value)
{
    if (validDmzIp(value) != kSuccess) return kInvalidArgument;
    return Verdict(strcmp(value, ReadAddress("networkLanSettingIp").data()) != 0);
}

int validDefaultGateway(const char* value)
{
    const uint32_t profile = ReadDigits(OrEmpty(value)).value_or(0);
    if (profile < 1 || profile > ProfileCount()) return kInvalidArgument;
    return Verdict(ProfileEnabled(profile));
}

int validVpnserver(const char* value)
{
    const size_t length = strlen(OrEmpty(value));
    if (length < 1 || length > kVpnServerMax) return kInvalidArgument;
    return Verdict(validAddressExzerobc(value) == kSuccess || checkDomain(value) == kSuccess);
}

int validWatchdogPingServer(const char* value)
{
    return Verdict(validIpv4(value) == kSuccess || validIpv6(value) == kSuccess || validDomain(value) == kSuccess);
}

int validSnmpTrapServer(const char* value) { return validWatchdogPingServer(value); }

int validFtpUsr(const char* value)
{
    const bool needed = UpgradeNeedsCredentials();
    if (value == nullptr || (needed && *value == 0)) return kInvalidArgument;
    return Verdict(strlen(value) <= kCredentialMax);
}

int validFtpPwd(const char* value) { return validFtpUsr(value); }
