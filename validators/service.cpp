// Time zone, position, dynamic DNS, configuration file and Wi-Fi keys.
#include "validators/service.h"

#include <unistd.h>

#include <array>
#include <cstring>
#include <string_view>

#include "validators/check.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
using namespace std::string_view_literals;

constexpr size_t kZoneLength = 9;  // GMT+hh:mm
constexpr uint32_t kZoneHoursMax = 12;
constexpr double kLongitudeMax = 180;  // degrees
constexpr double kLatitudeMax = 90;    // degrees

// Zones in use whose offset is not one of whole hours up to 12.
constexpr std::array kSpecialZones = {"GMT-03:30"sv, "GMT+03:30"sv, "GMT+04:30"sv, "GMT+05:30"sv,
                                      "GMT+05:45"sv, "GMT+06:30"sv, "GMT+09:30"sv, "GMT+13:00"sv};

// The providers that the dynamic DNS client of this platform can serve.
constexpr std::array kDdnsProviders = {
    "DDNS1.EXAMPLE.COM"sv, "DDNS2.EXAMPLE.COM"sv, "DDNS2.EXAMPLE.COM(CUSTOM)"sv, "DDNS2.EXAMPLE.COM(STATIC)"sv,
    "DDNS3.EXAMPLE.COM"sv, "DDNS4.EXAMPLE.COM"sv, "DDNS5.EXAMPLE.COM"sv,         "DDNS1.EXAMPLE.NET"sv,
    "DDNS2.EXAMPLE.NET"sv, "DDNS3.EXAMPLE.NET"sv, "DDNS3.EXAMPLE.NET(STATIC)"sv, "DDNS1.EXAMPLE.ORG"sv,
    "DDNS2.EXAMPLE.ORG"sv, "DDNS3.EXAMPLE.ORG"sv};
static_assert(kDdnsProviders.size() == 14);

bool IsWholeHourZone(std::string_view zone)
{
    const auto hours = ReadDigits(zone.substr(4, 2));
    const auto minutes = ReadDigits(zone.substr(7, 2));
    return hours && *hours <= kZoneHoursMax && zone[6] == ':' && minutes == 0u;
}

bool IsZone(std::string_view zone)
{
    if (zone.size() != kZoneLength || !zone.starts_with("GMT") || (zone[3] != '+' && zone[3] != '-')) return false;
    return IsOneOf(zone, kSpecialZones) || IsWholeHourZone(zone);
}

int CheckDegrees(const char* value, double limit)
{
    const auto degrees = ReadReal(value);
    return Verdict(degrees && *degrees >= -limit && *degrees <= limit);
}
}  // namespace

int validSystemTimezone(const char* value) { return Verdict(IsZone(OrEmpty(value))); }

int validDdnsServiceProvider(const char* value) { return Verdict(IsOneOf(OrEmpty(value), kDdnsProviders)); }

int validGpsLongitude(const char* value) { return CheckDegrees(value, kLongitudeMax); }

int validGpsLatitude(const char* value) { return CheckDegrees(value, kLatitudeMax); }

int validGpsAltitude(const char* value) { return Verdict(ReadReal(value).has_value()); }

int validConfigFile(const char* value) { return Verdict(access(OrEmpty(value), F_OK) == 0); }

int validWifiPassword(const char* text)
{
    if (text == nullptr) return kInvalidArgument;
    // "0x" would be taken for a key in hexadecimal digits.
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    return Verdict(!hexadecimal && strchr(text, ' ') == nullptr);
}
