// Reading and writing the lines of a configuration's file.
#include "host/uci/settings.h"

#include <cerrno>
#include <string_view>

#include "host/state/folder.h"

namespace kobd::host
{
namespace
{
constexpr std::string_view kHeading = "# Settings of our own uci.\n";
constexpr std::string_view kEnd = "end";

// False when a line is neither comment, setting nor the end, or the end is missing.
bool ParseSettings(std::string_view text, Settings* settings)
{
    while (!text.empty())
    {
        const size_t newline = text.find('\n');
        if (newline == std::string_view::npos) return false;
        const std::string_view line = text.substr(0, newline);
        text.remove_prefix(newline + 1);
        if (line == kEnd) return text.empty();
        if (line.empty() || line.front() == '#') continue;
        const size_t equals = line.find('=');
        std::string value;
        if (equals == std::string_view::npos || equals == 0 || !Unescape(line.substr(equals + 1), &value)) return false;
        settings->emplace_back(line.substr(0, equals), value);
    }
    return false;
}
}  // namespace

LoadResult LoadSettings(const std::string& path, Settings* settings)
{
    settings->clear();
    std::string text;
    if (!ReadText(path, &text)) return errno == ENOENT ? LoadResult::kMissing : LoadResult::kUnreadable;
    if (ParseSettings(text, settings)) return LoadResult::kLoaded;
    settings->clear();
    return LoadResult::kDamaged;
}

bool SaveSettings(const std::string& path, const Settings& settings)
{
    std::string text(kHeading);
    for (const auto& [name, value] : settings) text.append(name).append("=").append(Escape(value)).append("\n");
    return SaveText(path, text.append(kEnd).append("\n"));
}
}  // namespace kobd::host
