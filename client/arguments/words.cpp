// Words to integers and to lists.
#include "client/arguments/words.h"

#include <charconv>

namespace kobd::client
{
std::string Joined(const Words& words, const char* separator)
{
    std::string out;
    for (const std::string& word : words) out += (&word == words.data() ? "" : separator) + word;
    return out;
}

std::optional<int64_t> ReadInteger(const std::string& text, int64_t lowest, int64_t highest)
{
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if (number < lowest || number > highest || (text[0] == '-' && lowest >= 0)) return std::nullopt;
    return number;
}
}  // namespace kobd::client
