// Random changes of bytes.
#include "fuzz/mutated.h"

namespace kobd::fuzz
{
std::string Mutated(std::string payload, std::mt19937& random)
{
    for (unsigned change = random() % 4; change != ~0u; --change)
        switch (const size_t place = random() % payload.size(); random() % 4)
        {
            case 0: payload[place] = static_cast<char>(random()); break;
            case 1: payload[place] = static_cast<char>(payload[place] ^ (1 << random() % 8)); break;
            case 2: payload.insert(place, 1 + random() % 6, static_cast<char>(random() % 4)); break;
            default: payload.resize(1 + place); break;
        }
    return payload;
}
}  // namespace kobd::fuzz
