// Gateways, and the servers that the router talks to.
#include <cstdio>
#include <cstring>

#include "daemon/base/result.h"
#include "dictionary/records.h"
#include "dictionary/snapshot.h"
#include "platform/connection.h"
#include "platform/nvram.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/lan.h"
#include "validators/lan_values.h"
#include "validators/texts.h"

namespace kobd
{
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

bool IsAddressOrDomain(const char* value)
{
    return validIpv4(value) == kSuccess || validIpv6(value) == kSuccess || validDomain(value) == kSuccess;
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
}  // namespace kobd

int validWanGateway(const char* value)
{
    if (validIpv4(value) != kobd::kSuccess || !kobd::IsLanHost(value)) return kobd::kInvalidArgument;
    const bool lan = strcmp(value, kobd::ReadAddress("networkLanSettingIp").data()) == 0;
    return lan ? kobd::kInvalidArgument : kobd::kSuccess;
}

int validDefaultGateway(const char* value)
{
    const uint32_t profile = kobd::ReadDigits(kobd::OrEmpty(value)).value_or(0);
    if (profile < 1 || profile > kobd::ProfileCount()) return kobd::kInvalidArgument;
    return kobd::ProfileEnabled(profile) ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validVpnserver(const char* value)
{
    const size_t length = strlen(kobd::OrEmpty(value));
    if (length < 1 || length > kobd::kVpnServerMax) return kobd::kInvalidArgument;
    const bool server = validAddressExzerobc(value) == kobd::kSuccess || checkDomain(value) == kobd::kSuccess;
    return server ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validWatchdogPingServer(const char* value)
{
    return kobd::IsAddressOrDomain(value) ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validSnmpTrapServer(const char* value) { return validWatchdogPingServer(value); }

int validFtpUsr(const char* value)
{
    if (value == nullptr) return kobd::kInvalidArgument;
    const bool needed = kobd::UpgradeNeedsCredentials();
    if (needed && *value == 0) return kobd::kInvalidArgument;
    return strlen(value) <= kobd::kCredentialMax ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validFtpPwd(const char* value) { return validFtpUsr(value); }
