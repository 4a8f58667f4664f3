// The supported bands, from the non-volatile store.
#include "validators/supported_bands.h"

#include <algorithm>

#include "dictionary/integer.h"
#include "platform/nvram.h"
#include "platform/text.h"
#include "validators/texts.h"

namespace kobd
{
namespace
{
constexpr size_t kStoredBytes = 257;  // one byte more than any caller keeps, to see that a list is longer
}

void ReadBandList(const char* key, std::span<char> list)
{
    char stored[kStoredBytes] = {};
    nv_get(key, stored, std::min(list.size() + 1, sizeof stored));
    std::string_view kept = stored;
    // Cut a list that is too long between two numbers: the 4 of a 41 would stand for another band.
    if (kept.size() >= list.size())
    {
        const size_t blank = kept.rfind(' ');
        kept = kept.substr(0, blank != kept.npos ? blank : 0);
    }
    CopyWhole(kept, list);
}

BandNumbers SplitBandList(std::string_view list, std::span<int32_t> bands)
{
    BandNumbers numbers;
    for (std::string_view item = TakeWord(list, ' '); !item.empty(); item = TakeWord(list, ' '))
    {
        char number[kStoredBytes];
        const bool digits = CopyWhole(item, number) && string_is_digits(number) != 0;
        numbers.digits_only = numbers.digits_only && digits;
        if (numbers.count < bands.size()) bands[numbers.count++] = digits ? ReadInteger(number) : 0;
    }
    return numbers;
}
}  // namespace kobd
