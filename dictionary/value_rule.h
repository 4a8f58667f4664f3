// What a value may be by type and limitation. A pure function that names the rule a value breaks and
// what would be right: the daemon logs it, the client puts it into words.
#pragma once

#include <cstdint>

#include "dictionary/value_type.h"

namespace kobd
{
enum class ValueFault
{
    kNone,
    kNoDigits,   // empty, or not digits alone
    kRange,      // a number outside lower and upper
    kLength,     // a text whose length is outside lower and upper
    kForbidden,  // a text with one of ` $ ( ) | &
    kNoFlag,     // neither 0 nor 1
    kNoChoice,   // none of the choices of the limitation
    kNoValue,    // the type accepts no value
};

struct ValueVerdict
{
    ValueFault fault = ValueFault::kNone;
    int64_t found = 0;  // kRange: the number, at most the greatest of its kind; kLength: the bytes
    int64_t lower = 0;  // what kRange and kLength allow, both inclusive
    int64_t upper = 0;
};

// True for the types whose values are numbers without a sign.
bool IsUnsigned(ValueType type);

// `limitation` may be nullptr: the type's own bounds hold.
ValueVerdict JudgeValue(const char* value, ValueType type, const char* limitation);
}  // namespace kobd
