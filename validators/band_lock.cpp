// Lists of bands to lock to.
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "validators/address.h"

namespace kobd
{
namespace
{
constexpr size_t kLockCopy = 1024;      // bytes
constexpr size_t kSupportedCopy = 256;  // bytes
constexpr size_t kSupportedMax = 64;    // bands
constexpr size_t kSupportedLength = 7;  // characters of a band that count
constexpr size_t kLockedMax = 16;       // bands of one lock

struct SupportedBands
{
    std::array<std::string_view, kSupportedMax> names;
    std::array<bool, kSupportedMax> locked = {};
    size_t count = 0;
};

SupportedBands SplitSupported(std::string_view list)
{
    SupportedBands bands;
    while (bands.count < kSupportedMax)
    {
        const size_t start = list.find_first_not_of(' ');
        if (start == std::string_view::npos) break;
        list.remove_prefix(start);
        const std::string_view band = list.substr(0, list.find(' '));
        list.remove_prefix(band.size());
        bands.names[bands.count++] = band.substr(0, kSupportedLength);
    }
    return bands;
}

// Marks a supported band as locked; false when it is not supported, or locked already.
bool Lock(SupportedBands& bands, std::string_view band)
{
    for (size_t i = 0; i < bands.count; ++i)
        if (bands.names[i] == band) return !std::exchange(bands.locked[i], true);
    return false;
}
}  // namespace

int validBandLock(const char* value, const char* supported)
{
    std::string_view rest = value;
    if (rest.empty()) return kSuccess;
    if (rest.back() != ';' || rest == ";")
    {
        LOG_ALWAYS("validBandLock", "invalid\n");
        return kInvalidArgument;
    }
    if (rest.size() >= kLockCopy || strlen(supported) >= kSupportedCopy) return kInvalidArgument;
    SupportedBands bands = SplitSupported(supported);
    for (size_t count = 1; !rest.empty(); ++count)
    {
        const std::string_view band = rest.substr(0, rest.find(';'));
        if (count > kLockedMax || !Lock(bands, band)) return kInvalidArgument;
        rest.remove_prefix(band.size() + 1);
    }
    return kSuccess;
}
}  // namespace kobd
