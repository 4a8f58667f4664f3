// Dotted texts, as far as they are numbers.
#include "validators/dotted.h"

#include <cstdlib>

namespace kobd
{
std::optional<DottedParts> ReadDotted(const char* text)
{
    if (text == nullptr) return std::nullopt;
    DottedParts parts;
    for (size_t i = 0; i < parts.size(); ++i)
    {
        if (i > 0 && *text++ != '.') return std::nullopt;
        char* end = nullptr;
        parts[i] = strtoll(text, &end, 10);
        if (end == text) return std::nullopt;
        text = end;
    }
    return parts;
}
}  // namespace kobd
