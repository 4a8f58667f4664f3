// Radio modes, band locks, tracking areas and transmit power. The channel and the cell lock have
// files of their own.
#include "validators/radio.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "daemon/base/result.h"
#include "validators/address.h"
#include "validators/regex.h"
#include "validators/supported_bands.h"

namespace kobd
{
namespace
{
constexpr size_t kCommandLooked = 63;   // characters of a command in which a "/" counts
constexpr size_t kBandListBytes = 256;  // of a list of supported bands, with its zero byte
constexpr size_t kTacListMax = 48;      // characters
constexpr int kTacCodesMax = 8;

int IsOneOf(const char* value, std::initializer_list<const char*> words)
{
    const bool found =
        value != nullptr &&
        std::any_of(words.begin(), words.end(), [value](const char* word) { return strcasecmp(value, word) == 0; });
    return found ? kSuccess : kInvalidArgument;
}

int CheckBandLock(const char* value, const char* key)
{
    if (value == nullptr) return kInvalidArgument;
    char list[kBandListBytes];
    ReadBandList(key, list);
    return validBandLock(value, list);
}

// Parts between ";" that hold something.
int CountCodes(const char* list)
{
    int count = 0;
    for (const char* c = list; *c != 0; ++c)
        if (*c != ';' && (c == list || c[-1] == ';')) ++count;
    return count;
}
}  // namespace
}  // namespace kobd

using namespace kobd;

int validRadioPreferMode(const char* value)
{
    const bool known = value != nullptr && (strcmp(value, "4G") == 0 || strcmp(value, "5G") == 0);
    return known ? kSuccess : kInvalidArgument;
}

int validPreMode(const char* value) { return IsOneOf(value, {"LTE_TD_pre", "TD_GSM_pre"}); }

int validErrValid(const char* value) { return IsOneOf(value, {"TD_LTE_auto", "Only_LTE", "Only_TD", "Only_GSM"}); }

int validEventNotifyComd(const char* value)
{
    if (value == nullptr) return kInvalidArgument;
    return memchr(value, '/', strnlen(value, kCommandLooked)) != nullptr ? kSuccess : kInvalidArgument;
}

int validlteBandLock(const char* value) { return CheckBandLock(value, kLteBandsKey); }

int valid5gBandLock(const char* value) { return CheckBandLock(value, kNrBandsKey); }

int validTacLockList(const char* value)
{
    if (value == nullptr || strnlen(value, kTacListMax + 1) > kTacListMax) return kInvalidArgument;
    if (*value == 0) return kSuccess;
    const int count = CountCodes(value);
    if (count > kTacCodesMax) return kInvalidArgument;

    // A code is 1 to 65535 (16 bits, 3GPP TS 24.301, 9.9.3.32; 0 is no area).
    char pattern[160];
    snprintf(pattern, sizeof pattern,
             "^(([1-9][0-9]{0,3}|[1-5][0-9]{4}|6[0-4][0-9]{3}|65[0-4][0-9]{2}|655[0-2][0-9]|6553[0-5]);){%d}$", count);
    char captures[3][kCaptureBytes] = {};
    return regexMatchFunction(value, pattern, captures);
}

int validTacLockTimes(const char* value)
{
    char captures[1][kCaptureBytes] = {};
    return regexMatchFunction(value, "^[1-8]$", captures);
}

int validLteTxpowerLimit(const char* value)
{
    char captures[2][kCaptureBytes] = {};
    return regexMatchFunction(value, "^(0|1,[0-9]|1,1[0-9]|1,2[0-3])$", captures);
}
