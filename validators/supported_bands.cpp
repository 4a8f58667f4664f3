// The supported bands, from the non-volatile store.
#include "validators/supported_bands.h"

#include <cstring>

#include "dictionary/integer.h"
#include "platform/nvram.h"
#include "platform/text.h"

namespace kobd
{
void ReadBandList(const char* key, std::span<char> list)
{
    memset(list.data(), 0, list.size());
    nv_get(key, list.data(), list.size());
    if (strlen(list.data()) + 1 < list.size()) return;

    // The list fills its buffer, so that the store may have cut it within a number: the 4 of a 41
    // would stand for another band.
    char* blank = strrchr(list.data(), ' ');
    *(blank != nullptr ? blank : list.data()) = 0;
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
