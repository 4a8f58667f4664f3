// APN binding, bandwidth, command texts, digit maps.
#include "validators/management.h"

#include <cstring>

#include "dictionary/integer.h"
#include "platform/connection.h"
#include "platform/lists.h"
#include "platform/nvram.h"
#include "validators/check.h"
#include "validators/regex.h"
#include "validators/rows.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr const char* kBinding = "validTr069BindApnIndex";
constexpr size_t kGatewayBytes = 32;   // of the default gateway's APN number as text
constexpr size_t kDigitMapMax = 1024;  // characters

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

int validTr069BindApnIndex(const char* value)
{
    const int32_t apn = ReadInteger(OrEmpty(value));
    const uint32_t count = g_stConfigWANIF.count;
    if (count == 1) return apn == 1 ? kSuccess : Refuse(kBinding, "only apn1 in config\n");
    if (apn < 1 || static_cast<uint32_t>(apn) > count) return Refuse(kBinding, "out of wan interface count\n");
    return CarriesDefaultRoute(apn) || !IsOff(apn) ? kSuccess : Refuse(kBinding, "enable the apn first\n");
}

int validIperfUdpBandWidth(const char* value) { return MatchWithLine(value, "^[1-9]+([0-9]*)([K]|[M])$"); }

int validCommonStr(const char* value) { return Verdict(value != nullptr && strchr(value, ';') == nullptr); }

int validDigitMap(const char* value)
{
    const size_t length = strnlen(OrEmpty(value), kDigitMapMax + 1);
    return Verdict(length >= 1 && length <= kDigitMapMax);
}
