// Speed dial: short numbers that stand for telephone numbers.
#include "validators/speed_dial.h"

#include <cstdlib>
#include <string_view>

#include "platform/lists.h"
#include "validators/check.h"
#include "validators/rows.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
using Row = SpeedDialRow;

constexpr const char* kFunction = "speedDialListValid";
constexpr size_t kNumberMax = 32;       // characters
constexpr size_t kDescriptionMax = 31;  // characters
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kNumberKeys = "1234567890*#";
constexpr std::string_view kDescriptionCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890[]@=.-*()$#!_ ^{}|~";

// 1 to 99 in one or two digits.
bool IsSpeedDialNumber(std::string_view text)
{
    if (!IsMadeOf(text, kDigits)) return false;
    return (text.size() == 1 && text != "0") || (text.size() == 2 && text != "00");
}

int SpeedDialNumber(const void* row) { return atoi(FieldCopy(row, Row::kSpeedDialNumber).Text()); }
}  // namespace

int speedDialListValid(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    if (!IsSpeedDialNumber(FieldView(row, Row::kSpeedDialNumber))) return Refuse(kFunction, "invalid speedDialNum");
    const std::string_view number = FieldView(row, Row::kActureNumber);
    if (number.size() > kNumberMax || !IsMadeOf(number, kNumberKeys)) return Refuse(kFunction, "invalid actureNum");
    const std::string_view description = FieldView(row, Row::kDescription);
    if (description.size() > kDescriptionMax || !IsMadeOf(description, kDescriptionCharacters))
        return Refuse(kFunction, "invalid description");

    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return Refuse(kFunction, "memery alloc failed");
    const int own = SpeedDialNumber(row);
    OtherRows others(speedDialListNext, RowIndex(row), other.get());
    while (others.Read())
        if (SpeedDialNumber(other.get()) == own) return Refuse(kFunction, "the entry has been in the list");
    return others.Result();
}
