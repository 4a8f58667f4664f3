// Texts on a terminal: what may stand there, in which colour, and in aligned columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

// Lines of cells under a heading, for a person to read.
struct Grid
{
    std::vector<std::string> heading;
    std::vector<bool> right;  // which columns align to the right
    std::vector<std::vector<std::string>> lines;
};

// The width of the terminal in characters: that of COLUMNS, else that of the terminal itself, else 80. What
// goes into a pipe does not change with the window.
size_t DisplayWidth();

// The grid as a table, two blanks between columns. An empty cell is shown as "-", a byte that would steer a
// terminal as "\x1b".
std::string TableText(const Grid& grid);

// The same when that fits `width`; else a line a cell ("  heading  value") below each line's first cell.
std::string FittingText(const Grid& grid, size_t width);
}  // namespace kobd::client
