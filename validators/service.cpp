// Time zone, position, dynamic DNS provider, configuration file.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "daemon/base/result.h"
#include "validators/lan.h"
#include "validators/texts.h"

namespace kobd
{
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

bool IsOneOf(std::string_view value, std::span<const std::string_view> texts)
{
    return std::find(texts.begin(), texts.end(), value) != texts.end();
}

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
    return degrees && *degrees >= -limit && *degrees <= limit ? kSuccess : kInvalidArgument;
}
}  // namespace
}  // namespace kobd

int validSystemTimezone(const char* value)
{
    return kobd::IsZone(kobd::OrEmpty(value)) ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validDdnsServiceProvider(const char* value)
{
    return kobd::IsOneOf(kobd::OrEmpty(value), kobd::kDdnsProviders) ? kobd::kSuccess : kobd::kInvalidArgument;
}

int validGpsLongitude(const char* value) { return kobd::CheckDegrees(value, kobd::kLongitudeMax); }

int validGpsLatitude(const char* value) { return kobd::CheckDegrees(value, kobd::kLatitudeMax); }

int validGpsAltitude(const char* value) { return kobd::ReadReal(value) ? kobd::kSuccess : kobd::kInvalidArgument; }

int validConfigFile(const char* value)
{
    return access(kobd::OrEmpty(value), F_OK) == 0 ? kobd::kSuccess : kobd::kInvalidArgument;
}
