// Texts on a terminal: what may stand there, in which colour, and in aligned columns.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kobd::client
{
// Bytes of the UTF-8 character at the start of `text`, which is not empty; 0 when there is none.
size_t CharacterLength(std::string_view text);

// Whether the character may steer the terminal or mislead who reads it: a control, in one byte or in two, a mark of
// direction, what looks like a blank or like nothing, or no character.
bool IsControl(std::string_view character);

// Whether standard output is a terminal that moves its cursor when it is told to.
bool MovesCursor();

// The text with "\x1b" in the place of control characters and of bytes that are no UTF-8, so that nothing steers the
// terminal: devices on the network choose their own names.
std::string Escaped(std::string_view text);

// The text with "\x0a" and "\x0d" in the place of line ends, which cannot begin another line then.
std::string WithoutLineEnds(std::string_view text);

// The text for standard output: escaped on a terminal, unchanged in a pipe or a file.
std::string Shown(std::string_view text);

// The same for a part of a line, in a pipe or a file without line ends.
std::string ShownInLine(std::string_view text);

// The time with its date, as people here have it: "2026-01-31 13:05:00", with microseconds where asked for. `time_us`
// is microseconds since 1970.
std::string TimeText(int64_t time_us, bool microseconds = false);

enum class Colour
{
    kGreen = 32,
    kRed = 31,
    kYellow = 33,
};

// The word with blanks up to `width`, coloured on a terminal unless NO_COLOR is set. The word must say by itself what
// its colour says.
std::string Coloured(Colour colour, const std::string& word, size_t width);

// A line of a diff: "- old" in red, "+ new" in green on a terminal.
std::string DiffLine(char sign, const std::string& text);

// Lines of cells under a heading, for a person to read.
struct Grid
{
    std::vector<std::string> heading;
    std::vector<bool> right;  // which columns align to the right
    std::vector<std::vector<std::string>> lines;
};

// The width for tables in characters: COLUMNS, else the width of the terminal, else 80. So the text in a pipe does not
// depend on the window.
size_t DisplayWidth();

// The grid as a table with two blanks between columns. It shows an empty cell as "-" and escapes the others.
std::string TableText(const Grid& grid);

// The same where that fits `width`. Else each line of the grid becomes its first cell with a line for each of the
// others below it: "  heading  value".
std::string FittingText(const Grid& grid, size_t width);
}  // namespace kobd::client
