// The cell lock: a list of cells, each an EARFCN and a physical cell identity.
#include "validators/cell_lock.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

#include "dictionary/integer.h"
#include "platform/text.h"
#include "validators/band_tables.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/supported_bands.h"

using namespace kobd;

namespace
{
constexpr const char* kFunction = "validPcilock";
constexpr int kEntriesMax = 5;             // cells that can be locked at once
constexpr int kEntryMax = 19;              // characters of an entry
constexpr size_t kBandsMax = 10;           // supported bands that are looked at
constexpr size_t kBandListBytes = 256;     // of the list of supported bands, with its zero byte
constexpr int32_t kCellIdentityMax = 503;  // physical layer cell identity, 3GPP TS 36.211, 6.11

// Bands beyond the table.
constexpr PciLockBand kHighBands[] = {
    {240, 240000, 247750},
    {250, 250000, 251500},
};

// An entry that is too long for its slot fills it, and is recognized by that.
using Entries = Parts<kEntriesMax, kEntryMax + 2>;

int RefuseAsInvalid(const char* text)
{
    LOG_ALWAYS(kFunction, "[%s] is invalid\n", text);
    return kInvalidArgument;
}

bool InBand(int32_t channel, int32_t band)
{
    const auto covers = [channel](const PciLockBand& row)
    { return row.band != 0 && channel >= row.low && channel <= row.high; };
    if (band >= 0 && static_cast<size_t>(band) < PciLockBandTable.size())
        return covers(PciLockBandTable[static_cast<size_t>(band)]);
    return std::any_of(std::begin(kHighBands), std::end(kHighBands),
                       [&](const PciLockBand& row) { return row.band == band && covers(row); });
}

int CheckEntry(const char* entry, std::span<const int32_t> supported)
{
    char channel[kEntryMax + 2];
    const char* cell = split_str_by_sep(entry, ",", channel, sizeof channel);
    if (strlen(entry) > size_t{kEntryMax} || *channel == 0 || *cell == 0) return RefuseAsInvalid(entry);
    if (string_is_digits(channel) == 0 || string_is_digits(cell) == 0)
        return Refuse(kFunction, "pcilock must be digit\n");
    if (ReadInteger(cell) > kCellIdentityMax) return RefuseAsInvalid(cell);
    const int32_t number = ReadInteger(channel);
    const bool in_band =
        std::any_of(supported.begin(), supported.end(), [number](int32_t band) { return InBand(number, band); });
    return in_band ? kSuccess : RefuseAsInvalid(channel);
}

// Ends at the first entry that is wrong by itself; of repeated ones each is named.
int CheckEntries(const Entries& entries, std::span<const int32_t> supported)
{
    int result = kSuccess;
    for (int i = 0; i < entries.count; ++i)
    {
        const char* entry = entries.part[i];
        if (*entry == 0) return Refuse(kFunction, "pcilock is empty\n");
        if (const int code = CheckEntry(entry, supported)) return code;
        if (!entries.IsRepeated(i)) continue;
        LOG_ALWAYS(kFunction, "[%s] is duplicate\n", entry);
        result = kInvalidArgument;
    }
    return result;
}
}  // namespace

int validPcilock(const char* value)
{
    const size_t length = strlen(OrEmpty(value));
    if (length < 2 || value[length - 1] != ';') return Refuse(kFunction, "invalid");

    char list[kBandListBytes];
    ReadBandList(kLteBandsKey, list);
    int32_t bands[kBandsMax];
    const BandNumbers supported = SplitBandList(list, bands);

    const Entries entries(value, ';');
    if (entries.TooMany()) return Refuse(kFunction, "max is 5\n");
    return CheckEntries(entries, {bands, supported.count});
}
