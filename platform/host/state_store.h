// Where the host platform keeps values: all running values in memory, those that differ from the
// factory's in one readable file.
//
//   # comment
//   webHttpPort=8080
//   description=two\nlines (a backslash is written \\ twice)
//   end
//
// The last line is "end"; without it the file was cut and is not believed.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kobd::host
{
// The state folder, ending without a slash: KOBD_STATE_DIR, else /etc/kobd for root, else a folder
// of the user's. Created when missing.
const std::string& StateFolder();

using Settings = std::vector<std::pair<std::string, std::string>>;

enum class LoadResult
{
    kLoaded,
    kMissing,
    kDamaged,
    kUnreadable,
};

// Reads a state file. Anything but kLoaded leaves `settings` empty.
LoadResult LoadSettings(const std::string& path, Settings* settings);

// Replaces the file by a temporary file, fsync, rename and fsync of the folder: after a power cut
// there is the old or the new file, whole. False with errno when it could not be written; the old
// file then stays.
bool SaveSettings(const std::string& path, const Settings& settings);

// Moves a damaged file aside so that nobody writes over it. Its new name, empty when that failed.
std::string KeepAside(const std::string& path);

// One line to the journal of the host platform: what a router would have done.
void Journal(std::string_view line);
}  // namespace kobd::host
