// One test by type; bounds and choices are read from the limitation.
#include "dictionary/value_rule.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "dictionary/integer.h"

namespace kobd
{
namespace
{
constexpr int kStringMax = 512;  // default longest value of VT_STRING, bytes
constexpr int kTextMax = 1024;   // default longest value of the text types, bytes

int64_t ReadSigned(const char* text) { return ReadInteger(text); }
int64_t ReadUnsigned(const char* text) { return static_cast<uint32_t>(strtoul(text, nullptr, 10)); }

// Takes the bounds that the limitation gives, "lower:upper" with either left out, for the type's own.
ValueBounds Limited(ValueBounds bounds, const char* limitation, int64_t (*read)(const char*))
{
    const char* lower = limitation != nullptr ? limitation : "";
    const char* colon = strchr(lower, ':');
    if (*lower != 0 && lower != colon) bounds.lower = read(lower);
    if (colon != nullptr && colon[1] != 0) bounds.upper = read(colon + 1);
    return bounds;
}

// Reads a text of digits alone; nothing for any other. A number beyond 40 bits is read as the first of these.
std::optional<uint64_t> ReadDigits(const char* text)
{
    constexpr uint64_t kBeyond = uint64_t{1} << 40;  // far above every bound; ten times as much fits 64 bits
    uint64_t number = 0;
    const char* at = text;
    for (; *at >= '0' && *at <= '9'; ++at) number = std::min(10 * number + static_cast<uint64_t>(*at - '0'), kBeyond);
    return at != text && *at == 0 ? std::optional(number) : std::nullopt;
}

// Judges the digits of a value against bounds that lie within 0 and `most`, or below 0.
ValueVerdict JudgeNumber(const char* value, const ValueBounds& bounds, uint64_t most)
{
    const auto wide = ReadDigits(value);
    if (!wide) return {ValueFault::kNoDigits};
    const auto number = static_cast<int64_t>(std::min(*wide, most));
    const bool inside = *wide <= most && number >= bounds.lower && number <= bounds.upper;
    return {inside ? ValueFault::kNone : ValueFault::kRange, number, bounds};
}

ValueVerdict JudgeText(const char* value, const ValueBounds& bounds, const char* forbidden)
{
    const auto length = static_cast<int>(strlen(value));
    if (length < bounds.lower || length > bounds.upper) return {ValueFault::kLength, length, bounds};
    return {strpbrk(value, forbidden) == nullptr ? ValueFault::kNone : ValueFault::kForbidden};
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

ValueFault OnlyIf(bool right, ValueFault fault) { return right ? ValueFault::kNone : fault; }

ValueFault JudgeNumber(const char* text, const FieldForm& form)
{
    const bool negative = *text == '-';
    const char* digits = text + negative;
    char* end = nullptr;
    errno = 0;
    const uint64_t number = strtoull(digits, &end, form.Base());
    if (isdigit(static_cast<unsigned char>(*digits)) == 0 || *end != 0) return ValueFault::kNoDigits;
    const uint64_t most = negative ? 0 - static_cast<uint64_t>(form.lower) : form.upper;
    return OnlyIf(errno != ERANGE && number <= most, ValueFault::kRange);
}

bool IsIpv4(const char* text)
{
    in_addr address;
    return inet_pton(AF_INET, text, &address) == 1;
}

// Six pairs of hexadecimal digits with ":" or "-" between them.
bool IsMac(const char* text)
{
    constexpr size_t kLength = kMacBytes * 3 - 1;
    const auto right = [text](size_t i)
    { return i % 3 == 2 ? text[i] == ':' || text[i] == '-' : isxdigit(static_cast<unsigned char>(text[i])) != 0; };
    size_t i = 0;
    while (i < kLength && right(i)) ++i;
    return i == kLength && text[i] == 0;
}
}  // namespace

ValueBounds BoundsOf(ValueType type, const char* limitation)
{
    switch (type)
    {
        case VT_INT32: return Limited({INT32_MIN, INT32_MAX}, limitation, ReadSigned);
        case VT_INT16: return Limited({INT16_MIN, INT16_MAX}, limitation, ReadSigned);
        case VT_INT8: return Limited({INT8_MIN, INT8_MAX}, limitation, ReadSigned);
        case VT_UINT32: return Limited({0, UINT32_MAX}, limitation, ReadUnsigned);
        case VT_UINT16: return Limited({0, UINT16_MAX}, limitation, ReadUnsigned);
        case VT_UINT8: return Limited({0, UINT8_MAX}, limitation, ReadUnsigned);
        case VT_STRING: return Limited({0, kStringMax}, limitation, ReadSigned);
        case VT_TEXT:
        case VT_TEXT_2: return Limited({0, kTextMax}, limitation, ReadSigned);
        default: return {};
    }
}

ValueVerdict JudgeValue(const char* value, ValueType type, const char* limitation)
{
    switch (type)
    {
        case VT_INT32:
        case VT_INT16:
        case VT_INT8: return JudgeNumber(value, BoundsOf(type, limitation), INT32_MAX);
        case VT_UINT32:
        case VT_UINT16:
        case VT_UINT8: return JudgeNumber(value, BoundsOf(type, limitation), UINT32_MAX);
        case VT_BOOL: return {OnlyIf((*value == '0' || *value == '1') && value[1] == 0, ValueFault::kNoFlag)};
        case VT_STRING: return JudgeText(value, BoundsOf(type, limitation), kForbiddenInString);
        case VT_TEXT:
        case VT_TEXT_2: return JudgeText(value, BoundsOf(type, limitation), "");
        case VT_STRING_2:
        case VT_STRING_4: return {};
        case VT_ENUM: return {OnlyIf(IsChoice(value, limitation == nullptr ? "" : limitation), ValueFault::kNoChoice)};
        default: return {ValueFault::kNoValue};
    }
}

ValueFault JudgeColumn(const char* text, const ColumnDef& column)
{
    const FieldForm form = FormOf(column);
    switch (form.kind)
    {
        case FieldKind::kSigned:
        case FieldKind::kUnsigned: return JudgeNumber(text, form);
        case FieldKind::kText:
        case FieldKind::kUpperText: return OnlyIf(strlen(text) <= form.upper, ValueFault::kLength);
        case FieldKind::kIpv4: return OnlyIf(IsIpv4(text), ValueFault::kNoAddress);
        case FieldKind::kMac: return OnlyIf(IsMac(text), ValueFault::kNoAddress);
        case FieldKind::kPointer:
        case FieldKind::kNone: break;
    }
    return ValueFault::kNoValue;
}
}  // namespace kobd
