// APN binding, bandwidth, command texts, digit maps.
#include "validators/management.h"

#include <cstring>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/integer.h"
#include "platform/connection.h"
#include "platform/lists.h"
#include "platform/nvram.h"
#include "validators/regex.h"
#include "validators/rows.h"
#include "validators/texts.h"

namespace kobd
{
namespace
{
constexpr size_t kGatewayBytes = 32;   // of the default gateway's APN number as text
constexpr size_t kDigitMapMax = 1024;  // characters

int RefuseBinding(const char* line)
{
    LOG_ALWAYS("validTr069BindApnIndex", "%s", line);
    return kInvalidArgument;
}

// Whether the default route leaves through APN `apn`, counted from 1.
bool CarriesDefaultRoute(int32_t apn)
{
    char gateway[kGatewayBytes] = {};
    nv_get("default_gateway", gateway, sizeof gateway);
    return ReadDigits(gateway) == static_cast<uint32_t>(apn);
}

// An APN whose profile cannot be read is not known to be off.
bool IsOff(int32_t apn)
{
    char row[ApnConfigRow::kSize] = {};
    return getApnInstance(apn - 1, row) == 0 && FieldView(row, ApnConfigRow::kApnEnable) != "1";
}
}  // namespace
}  // namespace kobd

using namespace kobd;

int validTr069BindApnIndex(const char* value)
{
    if (value == nullptr) return kInvalidArgument;
    const int32_t apn = ReadInteger(value);
    const uint32_t count = g_stConfigWANIF.count;
    if (count == 1) return apn == 1 ? kSuccess : RefuseBinding("only apn1 in config\n");
    if (apn < 1 || static_cast<uint32_t>(apn) > count) return RefuseBinding("out of wan interface count\n");
    return CarriesDefaultRoute(apn) || !IsOff(apn) ? kSuccess : RefuseBinding("enable the apn first\n");
}

int validIperfUdpBandWidth(const char* value)
{
    char captures[3][kCaptureBytes] = {};
    return regexMatchFunction(value, "^[1-9]+([0-9]*)([K]|[M])$", captures);
}

int validCommonStr(const char* value)
{
    return value != nullptr && strchr(value, ';') == nullptr ? kSuccess : kInvalidArgument;
}

int validDigitMap(const char* value)
{
    const size_t length = value != nullptr ? strnlen(value, kDigitMapMax + 1) : 0;
    return length >= 1 && length <= kDigitMapMax ? kSuccess : kInvalidArgument;
}
