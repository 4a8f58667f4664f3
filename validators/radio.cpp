// Radio modes, tracking areas, transmit power.
#include "validators/radio.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "validators/check.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr size_t kCommandLooked = 63;  // characters of a command in which a "/" is looked for
constexpr size_t kTacListMax = 48;     // characters
constexpr int kTacCodesMax = 8;

// How many parts between ";" are not empty.
int CountCodes(std::string_view list)
{
    int count = 0;
    while (!TakeWord(list, ';').empty()) ++count;
    return count;
}
}  // namespace

int validRadioPreferMode(const char* value) { return Verdict(IsOneOf(OrEmpty(value), {"4G", "5G"})); }

int validPreMode(const char* value)
{
    return Verdict(IsOneOf(OrEmpty(value), {"LTE_TD_pre", "TD_GSM_pre"}, LetterCase::kAny));
}

int validErrValid(const char* value)
{
    return Verdict(IsOneOf(OrEmpty(value), {"TD_LTE_auto", "Only_LTE", "Only_TD", "Only_GSM"}, LetterCase::kAny));
}

int validEventNotifyComd(const char* value)
{
    const char* text = OrEmpty(value);
    return Verdict(memchr(text, '/', strnlen(text, kCommandLooked)) != nullptr);
}

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
    return MatchWithLine(value, pattern);
}

int validTacLockTimes(const char* value) { return MatchWithLine(value, "^[1-8]$"); }

int validLteTxpowerLimit(const char* value) { return MatchWithLine(value, "^(0|1,[0-9]|1,1[0-9]|1,2[0-3])$"); }
