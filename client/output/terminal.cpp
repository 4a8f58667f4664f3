// Escapes and colours.
#include "client/output/terminal.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kobd::client
{
namespace
{
// Whether the character may steer the terminal: a control, in one byte or in two, or no character.
bool IsControl(std::string_view character)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(character[i]); };
    if (CharacterLength(character) == 0 || byte(0) < 0x20 || byte(0) == 0x7F) return true;
    return byte(0) == 0xC2 && byte(1) < 0xA0;
}

bool OnTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool WantsColours()
{
    const char* refused = getenv("NO_COLOR");
    const char* terminal = getenv("TERM");
    return OnTerminal() && (refused == nullptr || *refused == 0) && terminal != nullptr &&
           strcmp(terminal, "dumb") != 0;
}
}  // namespace

size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || byte(0) > 0xF4) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    return length;
}

std::string Escaped(std::string_view text)
{
    std::string out;
    while (!text.empty())
    {
        const size_t length = std::max<size_t>(1, CharacterLength(text));
        const std::string_view character = text.substr(0, length);
        const bool control = IsControl(character);
        for (const char byte : character)
        {
            char escape[8];
            snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            out += control ? std::string(escape) : std::string(1, byte);
        }
        text.remove_prefix(length);
    }
    return out;
}

std::string Shown(std::string_view text) { return OnTerminal() ? Escaped(text) : std::string(text); }

std::string Coloured(Colour colour, const std::string& word, size_t width)
{
    const std::string blanks(width - word.size(), ' ');
    if (!WantsColours()) return word + blanks;
    return "\033[" + std::to_string(static_cast<int>(colour)) + "m" + word + "\033[0m" + blanks;
}
}  // namespace kobd::client
