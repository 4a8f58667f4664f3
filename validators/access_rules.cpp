// Access restriction and parental control: which device is cut off, on which days and at what time.
#include "validators/access_rules.h"

#include <cstdint>
#include <cstring>
#include <optional>

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
constexpr int kDaysOfWeek = 7;
constexpr int kDayText = 32;  // bytes of one part of "Weekdays" with its zero byte
constexpr uint32_t kLastHour = 23;
constexpr uint32_t kMinutes = 60;  // of an hour

// One of the two tables: its name in the log, its fields, and what only one of them does.
struct RuleTable
{
    const char* function;
    TextField name;
    TextField host;
    TextField weekdays;
    TextField time_start;
    TextField time_stop;
    bool restriction;  // requires and checks "Name"; writes how many days there are and how each matched
};

constexpr RuleTable kAccessRestriction = {"validAccessRestriction",
                                          AccessRestrictionRow::kName,
                                          AccessRestrictionRow::kHost,
                                          AccessRestrictionRow::kWeekdays,
                                          AccessRestrictionRow::kTimeStart,
                                          AccessRestrictionRow::kTimeStop,
                                          true};
constexpr RuleTable kParentControl = {"validParentControl",
                                      ParentControlRow::kName,
                                      ParentControlRow::kHost,
                                      ParentControlRow::kWeekdays,
                                      ParentControlRow::kTimeStart,
                                      ParentControlRow::kTimeStop,
                                      false};

bool TrimFields(const RuleTable& table, void* row)
{
    for (const TextField field : {table.name, table.host, table.weekdays, table.time_start, table.time_stop})
        TrimField(row, field);
    for (const TextField field : {table.host, table.weekdays, table.time_start, table.time_stop})
        if (FieldView(row, field).empty()) return false;
    return !table.restriction || !FieldView(row, table.name).empty();
}

bool IsRuleName(const RuleTable& table, const char* name)
{
    if (strlen(name) > kRuleNameMax)
    {
        LOG_ALWAYS(table.function, "Name can contain a maximum of 32 characters");
        return false;
    }
    return validNameRestriction(name) == 1;
}

bool IsDevice(const RuleTable& table, const char* host)
{
    if (validIp(host) == 1 || validMac(host) == kSuccess) return true;
    LOG_ALWAYS(table.function, "Device parameter error");
    return false;
}

bool IsDay(const RuleTable& table, const char* day)
{
    LOG_ALWAYS(table.function, "%s ", day);
    const bool known = IsOneOf(day, {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"});
    if (table.restriction) LOG_ALWAYS(table.function, "status:%d ", known ? 0 : 1);
    return known;
}

// Whether the text names days, each at most once.
bool AreDays(const RuleTable& table, const char* weekdays)
{
    const Parts<kDaysOfWeek, kDayText> days(weekdays, ',', parseStrBySeparator);
    if (table.restriction) LOG_ALWAYS(table.function, "partnum:%d ", days.count);
    if (days.TooMany()) return false;
    for (int i = 0; i < days.count; ++i)
        if (!IsDay(table, days.part[i])) return false;
    for (int i = 0; i < days.count; ++i)
        if (days.IsRepeated(i)) return false;
    return true;
}

constexpr int kTimeParts = 2;  // hours and minutes

// A time of day as text, cut at ":".
using TimeTexts = Parts<kTimeParts, AccessRestrictionRow::kTimeStart.width + 1>;

// Minutes since midnight; a time is 0:00 to 23:59, in any number of digits.
std::optional<uint32_t> ReadTimeOfDay(const TimeTexts& texts)
{
    const std::optional<uint32_t> hour = ReadDigits(texts.part[0]);
    const std::optional<uint32_t> minute = ReadDigits(texts.part[1]);
    if (!hour || !minute || *hour > kLastHour || *minute >= kMinutes) return {};
    return *hour * kMinutes + *minute;
}

// Whether the second time is the first one or a later one of the same day.
bool IsPeriod(const RuleTable& table, const char* start, const char* stop)
{
    LOG_ALWAYS(table.function, "START:%s    STOP:%s", start, stop);
    const TimeTexts start_texts(start, ':', parseStrBySeparator);
    const TimeTexts stop_texts(stop, ':', parseStrBySeparator);
    if (start_texts.count != kTimeParts || stop_texts.count != kTimeParts)
    {
        LOG_ALWAYS(table.function, "separator error");
        return false;
    }
    const std::optional<uint32_t> from = ReadTimeOfDay(start_texts);
    const std::optional<uint32_t> to = ReadTimeOfDay(stop_texts);
    return from && to && *from <= *to;
}

int Judge(const RuleTable& table, void* row)
{
    if (row == nullptr || !TrimFields(table, row)) return kInvalidArgument;
    if (table.restriction && !IsRuleName(table, FieldCopy(row, table.name).Text())) return kInvalidArgument;
    const bool accepted =
        IsDevice(table, FieldCopy(row, table.host).Text()) && AreDays(table, FieldCopy(row, table.weekdays).Text()) &&
        IsPeriod(table, FieldCopy(row, table.time_start).Text(), FieldCopy(row, table.time_stop).Text());
    return Verdict(accepted);
}
}  // namespace

int validAccessRestriction(void* row) { return Judge(kAccessRestriction, row); }

int validParentControl(void* row) { return Judge(kParentControl, row); }
