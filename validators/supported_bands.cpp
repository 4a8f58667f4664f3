// The supported bands, from the non-volatile store.
#include "validators/supported_bands.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "dictionary/integer.h"
#include "platform/nvram.h"
#include "platform/text.h"
#include "validators/texts.h"

namespace kobd
{
namespace
{
constexpr size_t kStoredBytes = 257;  // one byte more than any caller keeps of a list
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

BandNumbers SplitBandList(char* list, std::span<int32_t> bands)
{
    BandNumbers numbers;
    char* rest = nullptr;
    for (char* item = strtok_r(list, " ", &rest); item != nullptr; item = strtok_r(nullptr, " ", &rest))
    {
        const bool digits = string_is_digits(item);
        numbers.digits_only = numbers.digits_only && digits;
        if (numbers.count < bands.size()) bands[numbers.count++] = digits ? ReadInteger(item) : 0;
    }
    return numbers;
}
}  // namespace kobd
