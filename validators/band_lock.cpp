// Lists of bands to lock to.
#include "validators/band_lock.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "validators/check.h"
#include "validators/supported_bands.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr size_t kLockCopy = 1024;      // bytes
constexpr size_t kSupportedCopy = 256;  // bytes
constexpr size_t kSupportedMax = 64;    // bands
constexpr size_t kSupportedLength = 7;  // characters of a band that are compared
constexpr size_t kLockedMax = 16;       // bands of one lock

struct Bands
{
    std::array<std::string_view, kSupportedMax> names;
    std::array<bool, kSupportedMax> locked = {};
    size_t count = 0;
};

Bands NamesOf(std::string_view list)
{
    Bands bands;
    std::string_view band = TakeWord(list, ' ');
    for (; !band.empty() && bands.count < kSupportedMax; band = TakeWord(list, ' '))
        bands.names[bands.count++] = band.substr(0, kSupportedLength);
    return bands;
}

// Marks a supported band as locked; false when it is not supported, or locked already.
bool Lock(Bands& bands, std::string_view band)
{
    for (size_t i = 0; i < bands.count; ++i)
        if (bands.names[i] == band) return !std::exchange(bands.locked[i], true);
    return false;
}

int CheckBandLock(const char* value, const char* key)
{
    char list[kSupportedCopy];
    ReadBandList(key, list);
    return validBandLock(value, list);
}
}  // namespace

int kobd::validBandLock(const char* value, const char* supported)
{
    if (value == nullptr || supported == nullptr) return kInvalidArgument;
    std::string_view rest = value;
    if (rest.empty()) return kSuccess;
    if (rest.back() != ';' || rest == ";") return Refuse("validBandLock", "invalid\n");
    if (rest.size() >= kLockCopy || strlen(supported) >= kSupportedCopy) return kInvalidArgument;
    Bands bands = NamesOf(supported);
    for (size_t count = 1; !rest.empty(); ++count)
        if (count > kLockedMax || !Lock(bands, TakePart(rest, ';'))) return kInvalidArgument;
    return kSuccess;
}

int validlteBandLock(const char* value) { return CheckBandLock(value, kLteBandsKey); }

int valid5gBandLock(const char* value) { return CheckBandLock(value, kNrBandsKey); }
