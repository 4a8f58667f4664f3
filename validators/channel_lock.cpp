// The channel lock: a list of EARFCNs and NR-ARFCNs, each within a band that the module supports.
#include "validators/channel_lock.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "dictionary/integer.h"
#include "platform/text.h"
#include "validators/band_tables.h"
#include "validators/check.h"
#include "validators/supported_bands.h"

using namespace kobd;

namespace
{
constexpr const char* kFunction = "validEarfcnlock";
constexpr size_t kListMax = 1023;       // characters of the channel list
constexpr size_t kChannelsMax = 5;      // channels that can be locked at once
constexpr size_t kSupportedMax = 32;    // bands of either generation that are looked at
constexpr size_t kBandListBytes = 128;  // of a list of supported bands, with its zero byte

struct Generation
{
    const char* key;  // of its supported bands
    const char* name;
    const char* title;
};
constexpr Generation kLte = {kLteBandsKey, "4g", "4G"};
constexpr Generation kNr = {kNrBandsKey, "5g", "5G"};

struct SupportedBands
{
    std::array<int32_t, kSupportedMax> bands;
    size_t count = 0;

    std::span<const int32_t> All() const { return {bands.data(), count}; }
};

int ReadSupportedBands(const Generation& generation, SupportedBands* supported)
{
    char list[kBandListBytes];
    ReadBandList(generation.key, list);
    LOG_ALWAYS(kFunction, "suppband%s_list: [%s]\n", generation.name, list);
    const BandNumbers numbers = SplitBandList(list, supported->bands);
    if (!numbers.digits_only)
    {
        LOG_ALWAYS(kFunction, "find not digits %s band !!!\n", generation.title);
        return kInvalidArgument;
    }
    supported->count = numbers.count;
    LOG_ALWAYS(kFunction, "band%s_num: [%d]\n", generation.name, static_cast<int>(numbers.count));
    return kSuccess;
}

uint32_t ChannelCount(const LteEarfcnBand& row) { return row.count; }
uint32_t ChannelCount(const NrArfcnBand& row) { return row.width / row.raster; }

// The first of `bands` whose downlink has the channel. A row whose first channel is 0 is passed over:
// undefined bands, bands without a downlink, and LTE band 1, so that no EARFCN below 600 can be locked.
template <typename Row, size_t rows>
const Row* FindBand(uint32_t channel, const SupportedBands& supported, const std::array<Row, rows>& table)
{
    for (const int32_t band : supported.All())
    {
        if (static_cast<size_t>(band) >= rows) continue;
        const Row& row = table[static_cast<size_t>(band)];
        if (row.dl_first != 0 && channel >= row.dl_first && channel - row.dl_first < ChannelCount(row)) return &row;
    }
    return nullptr;
}

bool InLteBand(uint32_t channel, const SupportedBands& supported)
{
    const LteEarfcnBand* row = FindBand(channel, supported, LteEarfcnBandTable);
    if (row == nullptr) return false;
    LOG_ALWAYS(kFunction, "4G -> [%d]\n", row->band);
    LOG_ALWAYS(kFunction, "dl_start_earfcn -> [%d]\n", row->dl_first);
    LOG_ALWAYS(kFunction, "band_width -> [%d]\n", row->count);
    return true;
}

bool InNrBand(uint32_t channel, const SupportedBands& supported)
{
    const NrArfcnBand* row = FindBand(channel, supported, NrArfcnBandTable);
    if (row == nullptr) return false;
    LOG_ALWAYS(kFunction, "5G -> [%d]\n", row->band);
    LOG_ALWAYS(kFunction, "dl_start_narfcn -> [%d]\n", row->dl_first);
    LOG_ALWAYS(kFunction, "band_width -> [%d]\n", row->width);
    LOG_ALWAYS(kFunction, "raster_ref -> [%d]\n", row->raster);
    return true;
}

struct Channels
{
    SupportedBands lte;
    SupportedBands nr;
    std::array<uint32_t, kChannelsMax> accepted;
    size_t count = 0;
};

int AcceptChannel(const char* text, Channels* channels)
{
    if (string_is_digits(text) == 0) return Refuse(kFunction, "find not digits arfcn value !!!\n");
    if (channels->count == kChannelsMax) return Refuse(kFunction, "lock arfcns_num too large !!!\n");

    const int32_t number = ReadInteger(text);
    const uint32_t channel = static_cast<uint32_t>(number);
    LOG_ALWAYS(kFunction, "arfcn_val[%d] -> [%d]\n", static_cast<int>(channels->count), number);
    for (size_t i = 0; i < channels->count; ++i)
        if (channels->accepted[i] == channel) return Refuse(kFunction, "find repeated arfcn value !!!\n");
    if (!InLteBand(channel, channels->lte) && !InNrBand(channel, channels->nr))
        return Refuse(kFunction, "find not support arfcn value !!!\n");
    channels->accepted[channels->count++] = channel;
    return kSuccess;
}

// At least one character before the last ";", and no empty part.
bool IsChannelList(const char* list, size_t length)
{
    return length >= 2 && list[0] != ';' && list[length - 1] == ';' && strstr(list, ";;") == nullptr;
}
}  // namespace

int validEarfcnlock(const char* value)
{
    if (value == nullptr) return Refuse(kFunction, "buffer is NULL !!!\n");
    char list[kListMax + 1];
    const size_t length = strnlen(value, kListMax + 1);
    memcpy(list, value, std::min(length, kListMax));
    list[std::min(length, kListMax)] = 0;
    LOG_ALWAYS(kFunction, "arfcns_list: [%s]\n", list);
    if (length > kListMax || !IsChannelList(list, length)) return Refuse(kFunction, "invalid arfcns_list format !!!\n");

    Channels channels;
    if (const int code = ReadSupportedBands(kLte, &channels.lte)) return code;
    if (const int code = ReadSupportedBands(kNr, &channels.nr)) return code;
    char* rest = nullptr;
    for (char* channel = strtok_r(list, ";", &rest); channel != nullptr; channel = strtok_r(nullptr, ";", &rest))
        if (const int code = AcceptChannel(channel, &channels)) return code;
    return kSuccess;
}
