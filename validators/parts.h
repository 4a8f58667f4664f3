// A text cut at a separator, for the checks of lists and pairs.
#pragma once

#include <cstring>

#include "platform/text.h"

namespace kobd
{
// The parts of a text, each cut to slot_bytes - 1 characters. The platform's helper gets room for one
// part more than `most`, so that a text with too many is found out even by a helper that stops at the
// room it is given.
template <int most, int slot_bytes>
struct Parts
{
    explicit Parts(const char* text, char separator, decltype(parse_str_by_separator)* split = parse_str_by_separator)
        : count(split(text, separator, part[0], slot_bytes, most + 1))
    {
    }

    bool TooMany() const { return count > most; }

    // Whether part `place` also stands before that place.
    bool IsRepeated(int place) const
    {
        for (int i = 0; i < place; ++i)
            if (strcmp(part[i], part[place]) == 0) return true;
        return false;
    }

    char part[most + 1][slot_bytes] = {};  // parts that the text does not have are empty
    int count;                             // of the parts; more than `most` says only that there are too many
};
}  // namespace kobd
