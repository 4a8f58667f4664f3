// What a text may be, as the value of an object or in a column of a table. Pure functions that name the
// rule a text breaks and what would be right: the daemon logs it, the client puts it into words.
#pragma once

#include <cstdint>

#include "dictionary/row_layout.h"
#include "dictionary/value_type.h"

namespace kobd
{
enum class ValueFault
{
    kNone,
    kNoDigits,   // empty, or not digits alone; in a column also a sign where no number has one
    kRange,      // a number outside the bounds
    kLength,     // a text whose length is outside the bounds
    kForbidden,  // a text with one of ` $ ( ) | &
    kNoFlag,     // neither 0 nor 1
    kNoChoice,   // none of the choices of the limitation
    kNoAddress,  // no IPv4 address like 192.168.1.2, no MAC address like 00:1A:2B:3C:4D:5E
    kNoValue,    // the type accepts no value
};

// What a VT_STRING must not have: the shell would read it.
inline constexpr char kForbiddenInString[] = "`$()|&";

// Both inclusive.
struct ValueBounds
{
    int64_t lower = 0;
    int64_t upper = 0;
};

struct ValueVerdict
{
    ValueFault fault = ValueFault::kNone;
    int64_t found = 0;  // kRange: the number, at most the greatest of its kind; kLength: the bytes
    ValueBounds bounds = {};
};

// What a number may be, or how many bytes a text may have; zeros for types that have no bounds. A value is
// digits alone, so that it is never below 0 even where a bound is. `limitation` may be nullptr: the type's
// own bounds hold.
ValueBounds BoundsOf(ValueType type, const char* limitation);

ValueVerdict JudgeValue(const char* value, ValueType type, const char* limitation);

// The rule that the text of a column breaks; FormOf tells what would be right. The daemon itself refuses
// only texts that are too long, and stores other wrong values as row_field.h says.
ValueFault JudgeColumn(const char* text, const ColumnDef& column);
}  // namespace kobd
