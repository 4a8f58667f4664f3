// Installation parameters of a Citizens Broadband Radio Service device.
#include "validators/cbsd.h"

#include <algorithm>
#include <cfloat>
#include <cstdlib>
#include <cstring>

#include "dictionary/integer.h"
#include "platform/text.h"
#include "validators/check.h"

using namespace kobd;

namespace
{
constexpr int kCoordinatePlaces = 7;

// Digits and at most one point; there may be none of either.
bool IsUnsignedDecimal(const char* text)
{
    text += strspn(text, "0123456789");
    // A point may stand at the end: the platform is not asked about the empty text behind it.
    return *text == 0 || (*text == '.' && (text[1] == 0 || string_is_digits(text + 1) != 0));
}

size_t PlacesOf(const char* decimal)
{
    const char* point = strchr(decimal, '.');
    return point != nullptr ? strlen(point + 1) : 0;
}

// The conversion of a double beyond single precision is undefined, hence the bounds.
float SinglePrecision(const char* decimal)
{
    return static_cast<float>(std::clamp<double>(strtod(decimal, nullptr), -FLT_MAX, FLT_MAX));
}

int CheckRange(const char* function, const char* value, int lower, int upper)
{
    if (value == nullptr) return kInvalidArgument;
    if (*value == 0) return kSuccess;
    if (string_is_digits(value) == 0) return Refuse(function, "must be decimal\n");
    const int32_t number = ReadInteger(value);
    if (number >= lower && number <= upper) return kSuccess;
    LOG_ALWAYS(function, "range: %d ~ %d\n", lower, upper);
    return kInvalidArgument;
}
}  // namespace

int validFloatAccuracy(const char* value, int places, float minimum, float maximum)
{
    constexpr const char* kFunction = "validFloatAccuracy";
    if (value == nullptr) return kInvalidArgument;
    if (*value == 0) return kSuccess;
    const char* decimal = *value == '+' || *value == '-' ? value + 1 : value;
    if (!IsUnsignedDecimal(decimal)) return Refuse(kFunction, "must be decimal\n");
    if (places < 0 || PlacesOf(decimal) > static_cast<size_t>(places))
        return Refuse(kFunction, "accurate to the seventh decimal place.\n");  // both callers allow seven
    const float number = SinglePrecision(value);
    if (number >= minimum && number <= maximum) return kSuccess;
    LOG_ALWAYS(kFunction, "range: %f ~ %f\n", static_cast<double>(minimum), static_cast<double>(maximum));
    return kInvalidArgument;
}

int validCbsdLatitude(const char* value) { return validFloatAccuracy(value, kCoordinatePlaces, -90.0F, 90.0F); }
int validCbsdLongitude(const char* value) { return validFloatAccuracy(value, kCoordinatePlaces, -180.0F, 180.0F); }

int validCbsdHeight(const char* value) { return CheckRange("validCbsdHeight", value, 0, 10000); }
int validCbsdHorAccuracy(const char* value) { return CheckRange("validCbsdHorAccuracy", value, 0, 50); }
int validCbsdVerAccuracy(const char* value) { return CheckRange("validCbsdVerAccuracy", value, 0, 3); }
int validCbsdAzimuth(const char* value) { return CheckRange("validCbsdAzimuth", value, 0, 359); }
int validCbsdDowntilt(const char* value) { return CheckRange("validCbsdDowntilt", value, -90, 90); }
int validCbsdGain(const char* value) { return CheckRange("validCbsdGain", value, -127, 128); }
int validCbsdEirp(const char* value) { return CheckRange("validCbsdEirp", value, -127, 47); }
int valid_cbsd_beamwidth(const char* value) { return CheckRange("valid_cbsd_beamwidth", value, 0, 360); }
