// A configuration's file:
//
//   # comment
//   network.lan=interface
//   network.lan.ipaddr=two\nlines (a backslash is written \\ twice)
//   end
//
// The last line is "end"; without it the file was cut and is not believed.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kobd::host
{
using Settings = std::vector<std::pair<std::string, std::string>>;

enum class LoadResult
{
    kLoaded,
    kMissing,
    kDamaged,
    kUnreadable,
};

// Reads a file. Anything but kLoaded leaves `settings` empty.
LoadResult LoadSettings(const std::string& path, Settings* settings);

// Replaces the file, as SaveText does. False with errno when it could not be written; the old file then stays.
bool SaveSettings(const std::string& path, const Settings& settings);
}  // namespace kobd::host
