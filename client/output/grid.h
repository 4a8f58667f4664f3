// Lines of cells under a heading for a person to read: as a table, or each line turned on its side
// where the table is wider than the terminal.
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

// Columns of the terminal: those of COLUMNS, else of the terminal itself, else 80, so that what
// goes into a pipe does not change with the window.
size_t DisplayWidth();

// Prints the grid as a table, two blanks between columns. An empty cell is shown as "-"; bytes that
// would steer a terminal are shown as "\x1b".
void PrintTable(const Grid& grid);

// As PrintTable when that fits `width`, else a line a cell ("  heading  value") with each line's
// first cell above.
void PrintFitting(const Grid& grid, size_t width);
}  // namespace kobd::client
