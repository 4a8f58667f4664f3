// Lines of cells under a heading, for a person to read: as a table, or with one cell a line where the table is
// wider than the terminal.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kobd::client
{
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
