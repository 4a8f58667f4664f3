// Installation parameters of a Citizens Broadband Radio Service device.
#include "validators/cbsd.h"

#include <algorithm>
#include <cfloat>
#include <cstdlib>
#include <cstring>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "dictionary/integer.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr int kCoordinatePlaces = 7;

int RefuseAsNoDecimal(const char* function)
{
    LOG_ALWAYS(function, "must be decimal\n");
    return kInvalidArgument;
}

// Digits with at most one point, or none of either.
bool IsUnsignedDecimal(const char* text)
{
    text += strspn(text, "0123456789");
    // What the platform says of no digits at all is its own affair; a point may stand at the end.
    return *text == 0 || (*text == '.' && (text[1] == 0 || string_is_digits(text + 1)));
}

size_t PlacesOf(const char* decimal)
{
    const char* point = strchr(decimal, '.');
    return point != nullptr ? strlen(point + 1) : 0;
}

// Doubles beyond single precision have no defined conversion, hence the bounds.
float SinglePrecision(const char* decimal)
{
    return static_cast<float>(std::clamp<double>(strtod(decimal, nullptr), -FLT_MAX, FLT_MAX));
}

int CheckRange(const char* function, const char* value, int lower, int upper)
{
    if (value == nullptr) return kInvalidArgument;
    if (*value == 0) return kSuccess;
    if (!string_is_digits(value)) return RefuseAsNoDecimal(function);
    const int32_t number = ReadInteger(value);
    if (number >= lower && number <= upper) return kSuccess;
    LOG_ALWAYS(function, "range: %d ~ %d\n", lower, upper);
    return kInvalidArgument;
}
}  // namespace
}  // namespace kobd

using namespace kobd;

int validFloatAccuracy(const char* value, int places, float minimum, float maximum)
{
    constexpr const char* kFunction = "validFloatAccuracy";
    if (value == nullptr) return kInvalidArgument;
    if (*value == 0) return kSuccess;
    const char* decimal = *value == '+' || *value == '-' ? value + 1 : value;
    if (!IsUnsignedDecimal(decimal)) return RefuseAsNoDecimal(kFunction);
    if (places < 0 || PlacesOf(decimal) > static_cast<size_t>(places))
    {
        // Both callers allow seven.
        LOG_ALWAYS(kFunction, "accurate to the seventh decimal place.\n");
        return kInvalidArgument;
    }
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
