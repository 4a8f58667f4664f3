// Texts on a terminal: what may stand there, and in which colour.
#pragma once

#include <string>
#include <string_view>

namespace kobd::client
{
// Bytes of the UTF-8 character at the start of `text`, which is not empty; 0 when there is none.
size_t CharacterLength(std::string_view text);

// The text without any byte that could steer a terminal, since devices on the network choose their own names:
// control characters and bytes that are no UTF-8 become "\x1b".
std::string Escaped(std::string_view text);

// The text for standard output: escaped on a terminal, unchanged in a pipe or a file.
std::string Shown(std::string_view text);

enum class Colour
{
    kGreen = 32,
    kRed = 31,
    kYellow = 33,
};

// The word with blanks up to `width`, in the colour where a terminal wants colours (NO_COLOR is not set). The
// word says by itself what its colour says.
std::string Coloured(Colour colour, const std::string& word, size_t width);
}  // namespace kobd::client
