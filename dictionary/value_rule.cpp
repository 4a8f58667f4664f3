// One test by type; bounds and choices are read from the limitation.
#include "dictionary/value_rule.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "dictionary/integer.h"

namespace kobd
{
namespace
{
constexpr char kForbidden[] = "`$()|&";
constexpr size_t kLimitationMax = 255;  // characters, longest in the catalogue 145
constexpr int kStringMax = 512;         // default longest value of VT_STRING, bytes
constexpr int kTextMax = 1024;          // default longest value of the text types, bytes

// The two bound texts of a limitation; nullptr where there is none.
struct BoundTexts
{
    explicit BoundTexts(const char* limitation)
    {
        if (limitation == nullptr || *limitation == 0 || strlen(limitation) > kLimitationMax) return;
        strcpy(copy_, limitation);
        char* colon = strchr(copy_, ':');
        if (colon != nullptr) *colon++ = 0;
        lower = *copy_ != 0 ? copy_ : nullptr;
        upper = colon != nullptr && *colon != 0 ? colon : nullptr;
    }
    BoundTexts(const BoundTexts&) = delete;
    BoundTexts& operator=(const BoundTexts&) = delete;

    const char* lower = nullptr;
    const char* upper = nullptr;

private:
    char copy_[kLimitationMax + 1];
};

int SignedBound(const char* text, int fallback) { return text == nullptr ? fallback : ReadInteger(text); }

uint32_t UnsignedBound(const char* text, uint32_t fallback)
{
    return text == nullptr ? fallback : static_cast<uint32_t>(strtoul(text, nullptr, 10));
}

// All digits to a number; UINT64_MAX when it has more than 64 bits.
uint64_t ReadDigits(const char* digits)
{
    errno = 0;
    const unsigned long long number = strtoull(digits, nullptr, 10);
    return errno == ERANGE ? UINT64_MAX : number;
}

bool IsDigits(const char* text) { return *text != 0 && text[strspn(text, "0123456789")] == 0; }

// Judges digits against bounds that lie within 0 and `most`, or below 0.
ValueVerdict JudgeNumber(const char* value, int64_t lower, int64_t upper, uint64_t most)
{
    if (!IsDigits(value)) return {ValueFault::kNoDigits};
    const uint64_t wide = ReadDigits(value);
    const auto number = static_cast<int64_t>(std::min(wide, most));
    const bool inside = wide <= most && number >= lower && number <= upper;
    return {inside ? ValueFault::kNone : ValueFault::kRange, number, lower, upper};
}

ValueVerdict JudgeSigned(const char* value, const BoundTexts& bounds, int lowest, int highest)
{
    return JudgeNumber(value, SignedBound(bounds.lower, lowest), SignedBound(bounds.upper, highest), INT_MAX);
}

ValueVerdict JudgeUnsigned(const char* value, const BoundTexts& bounds, uint32_t highest)
{
    return JudgeNumber(value, UnsignedBound(bounds.lower, 0), UnsignedBound(bounds.upper, highest), UINT32_MAX);
}

ValueVerdict JudgeLength(const char* value, const BoundTexts& bounds, int longest)
{
    const int length = static_cast<int>(strlen(value));
    const int lower = SignedBound(bounds.lower, 0);
    const int upper = SignedBound(bounds.upper, longest);
    return {length >= lower && length <= upper ? ValueFault::kNone : ValueFault::kLength, length, lower, upper};
}

ValueVerdict JudgeString(const char* value, const BoundTexts& bounds)
{
    const ValueVerdict verdict = JudgeLength(value, bounds, kStringMax);
    if (verdict.fault != ValueFault::kNone || strpbrk(value, kForbidden) == nullptr) return verdict;
    return {ValueFault::kForbidden};
}

bool IsChoice(std::string_view value, std::string_view choices)
{
    choices = choices.substr(0, choices.find(':'));
    for (;;)
    {
        const size_t bar = choices.find('|');
        const std::string_view choice = choices.substr(0, bar);
        if (choice.size() == value.size() && strncasecmp(choice.data(), value.data(), choice.size()) == 0) return true;
        if (bar == std::string_view::npos) return false;
        choices.remove_prefix(bar + 1);
    }
}

ValueVerdict OnlyIf(bool right, ValueFault fault) { return {right ? ValueFault::kNone : fault}; }
}  // namespace

bool IsUnsigned(ValueType type) { return type == VT_UINT32 || type == VT_UINT16 || type == VT_UINT8; }

ValueVerdict JudgeValue(const char* value, ValueType type, const char* limitation)
{
    const BoundTexts bounds(limitation);
    switch (type)
    {
        case VT_INT32: return JudgeSigned(value, bounds, INT32_MIN, INT32_MAX);
        case VT_INT16: return JudgeSigned(value, bounds, INT16_MIN, INT16_MAX);
        case VT_INT8: return JudgeSigned(value, bounds, INT8_MIN, INT8_MAX);
        case VT_UINT32: return JudgeUnsigned(value, bounds, UINT32_MAX);
        case VT_UINT16: return JudgeUnsigned(value, bounds, UINT16_MAX);
        case VT_UINT8: return JudgeUnsigned(value, bounds, UINT8_MAX);
        case VT_BOOL: return OnlyIf((*value == '0' || *value == '1') && value[1] == 0, ValueFault::kNoFlag);
        case VT_STRING: return JudgeString(value, bounds);
        case VT_TEXT:
        case VT_TEXT_2: return JudgeLength(value, bounds, kTextMax);
        case VT_STRING_2:
        case VT_STRING_4: return {};
        case VT_ENUM: return OnlyIf(IsChoice(value, limitation == nullptr ? "" : limitation), ValueFault::kNoChoice);
        default: return {ValueFault::kNoValue};
    }
}
}  // namespace kobd
