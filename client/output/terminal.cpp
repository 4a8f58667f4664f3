// Escapes, colours and columns.
#include "client/output/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace kobd::client
{
namespace
{
constexpr size_t kPlainWidth = 80;
constexpr size_t kGap = 2;

// What turns the direction of a line, so that it reads as another one: U+061C, U+200E, U+200F, U+202A to U+202E and
// U+2066 to U+2069 (Unicode standard annex 9). What looks like a blank or like nothing: U+00A0, U+00AD, U+200B, U+2060
// and U+FEFF.
bool Misleads(std::string_view character)
{
    constexpr std::string_view kMarks[] = {"\u061C", "\u200E", "\u200F", "\u202A", "\u202B", "\u202C",
                                           "\u202D", "\u202E", "\u2066", "\u2067", "\u2068", "\u2069",
                                           "\u00A0", "\u00AD", "\u200B", "\u2060", "\uFEFF"};
    return std::ranges::find(kMarks, character) != std::end(kMarks);
}

bool OnTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool WantsColours()
{
    const char* refused = getenv("NO_COLOR");
    return MovesCursor() && (refused == nullptr || *refused == 0);
}

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

bool IsControl(std::string_view character)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(character[i]); };
    if (CharacterLength(character) == 0 || byte(0) < 0x20 || byte(0) == 0x7F || Misleads(character)) return true;
    return byte(0) == 0xC2 && byte(1) < 0xA0;
}

bool MovesCursor()
{
    const char* terminal = getenv("TERM");
    return OnTerminal() && terminal != nullptr && strcmp(terminal, "dumb") != 0;
}

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

std::string WithoutLineEnds(std::string_view text)
{
    std::string out;
    for (const char byte : text) out += byte == '\n' ? "\\x0a" : byte == '\r' ? "\\x0d" : std::string(1, byte);
    return out;
}

std::string ShownInLine(std::string_view text) { return OnTerminal() ? Escaped(text) : WithoutLineEnds(text); }

std::string Coloured(Colour colour, const std::string& word, size_t width)
{
    const std::string blanks(width - word.size(), ' ');
    if (!WantsColours()) return word + blanks;
    return "\033[" + std::to_string(static_cast<int>(colour)) + "m" + word + "\033[0m" + blanks;
}

std::string DiffLine(char sign, const std::string& text)
{
    const std::string line = std::string(1, sign) + " " + ShownInLine(text);
    return Coloured(sign == '-' ? Colour::kRed : Colour::kGreen, line, line.size()) + "\n";
}

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

std::string TimeText(int64_t time_us, bool microseconds)
{
    char text[40] = "";
    const auto seconds = static_cast<time_t>(time_us / 1'000'000);
    tm local{};
    if (localtime_r(&seconds, &local) == nullptr) return text;
    const size_t length = strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    if (microseconds) snprintf(text + length, sizeof text - length, ".%06d", static_cast<int>(time_us % 1'000'000));
    return text;
}
}  // namespace kobd::client
