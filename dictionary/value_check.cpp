// Value checking: one test by type, bounds and choices read from the limitation.
#include "dictionary/value_check.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "dictionary/integer.h"
#include "dictionary/name_index.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr const char* kFunction = "ParameterCheck";
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

int CheckInteger(const char* value, const BoundTexts& bounds, int lowest, int highest)
{
    const int lower = SignedBound(bounds.lower, lowest);
    const int upper = SignedBound(bounds.upper, highest);
    if (*value == 0 || !string_is_digits(value))
    {
        LOG_ALWAYS(kFunction, "Integer value is empty or does not only includ digits: %s", value);
        return kInvalidArgument;
    }
    const uint64_t wide = ReadDigits(value);
    const int number = static_cast<int>(std::min<uint64_t>(wide, INT_MAX));
    if (wide > INT_MAX || number < lower || number > upper)
    {
        LOG_ALWAYS(kFunction, "Integer value does not match limitation: %d [%d:%d]", number, lower, upper);
        return kInvalidArgument;
    }
    return kSuccess;
}

int CheckUnsigned(const char* value, const BoundTexts& bounds, uint32_t highest)
{
    const uint32_t lower = UnsignedBound(bounds.lower, 0);
    const uint32_t upper = UnsignedBound(bounds.upper, highest);
    if (*value == 0 || !string_is_digits(value))
    {
        LOG_ALWAYS(kFunction, "Integer value is empty or does not only include digits: %s", value);
        return kInvalidArgument;
    }
    const uint64_t wide = ReadDigits(value);
    const uint32_t number = static_cast<uint32_t>(std::min<uint64_t>(wide, UINT32_MAX));
    if (wide > UINT32_MAX || number < lower || number > upper)
    {
        // The format is the system's own and prints large unsigned numbers as negative ones.
        LOG_ALWAYS(kFunction, "Integer value does not match limitation: %d [%d:%d]", static_cast<int>(number),
                   static_cast<int>(lower), static_cast<int>(upper));
        return kInvalidArgument;
    }
    return kSuccess;
}

int CheckLength(const char* value, const BoundTexts& bounds, int longest)
{
    const int length = static_cast<int>(strlen(value));
    const int lower = SignedBound(bounds.lower, 0);
    const int upper = SignedBound(bounds.upper, longest);
    if (length >= lower && length <= upper) return kSuccess;
    LOG_ALWAYS(kFunction, "String value length does not match limitation: %d [%d:%d]", length, lower, upper);
    return kInvalidArgument;
}

int CheckString(const char* value, const BoundTexts& bounds)
{
    if (const int code = CheckLength(value, bounds, kStringMax)) return code;
    if (includeForbiddenCharacter(value, kForbidden, sizeof kForbidden - 1) == 0) return kSuccess;
    LOG_ALWAYS(kFunction, "String value contain illegal character!");
    return kInvalidArgument;
}

int CheckBool(const char* value)
{
    return (value[0] == '0' || value[0] == '1') && value[1] == 0 ? kSuccess : kInvalidArgument;
}

int CheckChoice(const char* value, const char* limitation)
{
    const std::string_view wanted = value;
    std::string_view choices = limitation == nullptr ? "" : limitation;
    choices = choices.substr(0, choices.find(':'));
    for (bool more = true; more;)
    {
        const size_t bar = choices.find('|');
        const std::string_view choice = choices.substr(0, bar);
        if (choice.size() == wanted.size() && strncasecmp(choice.data(), value, choice.size()) == 0) return kSuccess;
        more = bar != std::string_view::npos;
        if (more) choices.remove_prefix(bar + 1);
    }
    LOG_ALWAYS(kFunction, "Enum is incorrect: %s", value);
    return kInvalidArgument;
}

int CheckType(const char* value, const CheckDescriptor& check)
{
    const BoundTexts bounds(check.limitation);
    switch (check.type)
    {
        case VT_INT32: return CheckInteger(value, bounds, INT32_MIN, INT32_MAX);
        case VT_INT16: return CheckInteger(value, bounds, INT16_MIN, INT16_MAX);
        case VT_INT8: return CheckInteger(value, bounds, INT8_MIN, INT8_MAX);
        case VT_UINT32: return CheckUnsigned(value, bounds, UINT32_MAX);
        case VT_UINT16: return CheckUnsigned(value, bounds, UINT16_MAX);
        case VT_UINT8: return CheckUnsigned(value, bounds, UINT8_MAX);
        case VT_BOOL: return CheckBool(value);
        case VT_STRING: return CheckString(value, bounds);
        case VT_TEXT:
        case VT_TEXT_2: return CheckLength(value, bounds, kTextMax);
        case VT_STRING_2:
        case VT_STRING_4: return kSuccess;
        case VT_ENUM: return CheckChoice(value, check.limitation);
        default: return kInvalidArgument;
    }
}
}  // namespace

int ParameterCheck(const char* value, const CheckDescriptor* check)
{
    if (check == nullptr) return kSuccess;
    if (const int code = CheckType(value, *check)) return code;
    return check->validator != nullptr ? check->validator(value) : kSuccess;
}

int ObjsParameterCheck(std::span<const char> payload)
{
    TlvReader reader(payload);
    while (const auto name_item = reader.Next())
    {
        const auto value_item = reader.Next();
        const auto name = name_item->Text();
        if (!name || !value_item) return kInvalidArgument;
        const ObjDef* object = NameLookup(*name).object;
        if (object == nullptr) return kNotFound;
        const char* value = value_item->value.data();
        if (const int code = ParameterCheck(value, &object->check))
        {
            LOG_ALWAYS("ObjsParameterCheck", "%s(%s) verify error", object->name, value);
            return code;
        }
    }
    return kSuccess;
}
}  // namespace kobd

int includeForbiddenCharacter(const char* text, const char* set, int count)
{
    if (text == nullptr || set == nullptr) return 0;
    for (int i = 0; i < count; ++i)
        if (set[i] != 0 && strchr(text, set[i]) != nullptr) return 1;
    return 0;
}
