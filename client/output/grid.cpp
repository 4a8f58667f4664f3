// Aligned columns for a terminal.
#include "client/output/grid.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "client/output/terminal.h"

namespace kobd::client
{
namespace
{
constexpr size_t kPlainWidth = 80;
constexpr size_t kGap = 2;

std::string Visible(std::string_view text) { return text.empty() ? "-" : Escaped(text); }

// Characters on the screen: bytes that begin a UTF-8 character.
size_t Width(const std::string& text)
{
    return static_cast<size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

Grid MakeVisible(Grid grid)
{
    for (auto& line : grid.lines)
        for (std::string& cell : line) cell = Visible(cell);
    return grid;
}

std::vector<size_t> Widths(const Grid& grid)
{
    std::vector<size_t> widths;
    for (const std::string& cell : grid.heading) widths.push_back(Width(cell));
    for (const auto& line : grid.lines)
        for (size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], Width(line[i]));
    return widths;
}

std::string LineText(const Grid& grid, const std::vector<std::string>& cells, const std::vector<size_t>& widths)
{
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i)
    {
        const std::string padding(widths[i] - Width(cells[i]), ' ');
        if (i > 0) line.append(kGap, ' ');
        line += grid.right[i] ? padding + cells[i] : cells[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string AsTable(const Grid& grid, const std::vector<size_t>& widths)
{
    std::string text = LineText(grid, grid.heading, widths);
    for (const auto& line : grid.lines) text += LineText(grid, line, widths);
    return text;
}

std::string Sideways(const Grid& grid)
{
    size_t width = 0;
    for (const std::string& cell : grid.heading) width = std::max(width, Width(cell));
    std::string text;
    for (const auto& line : grid.lines)
    {
        text += grid.heading[0] + " " + line[0] + "\n";
        for (size_t i = 1; i < line.size(); ++i)
            text += "  " + grid.heading[i] + std::string(width + kGap - Width(grid.heading[i]), ' ') + line[i] + "\n";
    }
    return text;
}
}  // namespace

size_t DisplayWidth()
{
    const char* columns = getenv("COLUMNS");
    const long asked = columns != nullptr ? strtol(columns, nullptr, 10) : 0;
    if (asked > 0) return static_cast<size_t>(asked);
    winsize size = {};
    if (isatty(STDOUT_FILENO) != 0 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return kPlainWidth;
}

std::string TableText(const Grid& grid)
{
    const Grid visible = MakeVisible(grid);
    return AsTable(visible, Widths(visible));
}

std::string FittingText(const Grid& grid, size_t width)
{
    const Grid visible = MakeVisible(grid);
    const std::vector<size_t> widths = Widths(visible);
    size_t total = 0;
    for (const size_t one : widths) total += one + kGap;
    return total <= width + kGap ? AsTable(visible, widths) : Sideways(visible);
}
}  // namespace kobd::client
