// Parental control by weekly spans of time.
#include "validators/new_parent_control.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/lists.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/rows.h"
#include "validators/rule_name.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
using Row = NewParentControlRow;

constexpr size_t kSpanLength = 6;  // characters of one span
constexpr int kSpansMax = 84;
constexpr size_t kTimeMax = kSpansMax * (kSpanLength + 1) - 1;  // characters, "," between the spans
constexpr int kSpanSlot = 8;  // bytes; longer parts are cut, and still too long for a span

constexpr int kLastDay = 6;
constexpr int kLastHour = 23;

// The columns are the whole row behind its index.
bool SameColumns(const void* a, const void* b)
{
    constexpr size_t kIndexBytes = 4;
    return memcmp(static_cast<const char*>(a) + kIndexBytes, static_cast<const char*>(b) + kIndexBytes,
                  Row::kSize - kIndexBytes) == 0;
}

bool AreColumnsValid(const void* row)
{
    const FieldCopy name(row, Row::kName);
    const FieldCopy host(row, Row::kHost);
    const FieldCopy time(row, Row::kTime);
    const FieldCopy enable(row, Row::kEnable);
    if (name.Empty() || host.Empty() || time.Empty() || enable.Empty()) return false;
    if (name.View().size() > kRuleNameMax || validNameRestriction(name.Text()) == 0) return false;
    if (validMac(host.Text()) != kSuccess || validTimeStr(time.Text()) != kSuccess) return false;
    return IsOneOf(enable.View(), {"0", "1"});
}
}  // namespace

int validNewParentControl(void* row)
{
    if (row == nullptr || !AreColumnsValid(row)) return kInvalidArgument;
    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return kInvalidArgument;
    OtherRows others(securityNewParentControlListNext, RowIndex(row), other.get());
    while (others.Read())
        if (SameColumns(row, other.get())) return kInvalidArgument;
    return others.Result();
}

int validTimeStr(const char* text)
{
    const size_t length = strlen(OrEmpty(text));
    if (length < kSpanLength || length > kTimeMax || (length - kSpanLength) % (kSpanLength + 1) != 0)
        return kInvalidArgument;
    const Parts<kSpansMax, kSpanSlot> spans(text, ',');
    if (spans.count < 1 || spans.TooMany()) return kInvalidArgument;
    for (int i = 0; i < spans.count; ++i)
        if (validTimeSingle(spans.part[i]) != kSuccess) return kInvalidArgument;
    return kSuccess;
}

int validTimeSingle(const char* text)
{
    if (strlen(OrEmpty(text)) != kSpanLength || string_is_digits(text) == 0) return kInvalidArgument;
    const auto digit = [text](int place) { return text[place] - '0'; };
    const int first_day = digit(0);
    const int last_day = digit(1);
    const int start_hour = digit(2) * 10 + digit(3);
    const int end_hour = digit(4) * 10 + digit(5);
    if (std::max(first_day, last_day) > kLastDay || std::max(start_hour, end_hour) > kLastHour) return kInvalidArgument;
    if (first_day == last_day && start_hour > end_hour) return kInvalidArgument;
    return Verdict(last_day == 0 || first_day <= last_day);
}
