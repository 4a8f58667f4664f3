// Where the host platform keeps values: all running values in memory, those that differ from the
// factory's in readable files.
//
//   # comment
//   webHttpPort=8080
//   description=two\nlines (a backslash is written \\ twice)
//   [FwPortForwardTable 3]       a heading: a setting without a value whose name stands in brackets
//   Protocol=TCP
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
// The state folder, absolute, ending without a slash: KOBD_STATE_DIR, else /etc/kobd for root, else a
// folder of the user's. Created when missing.
const std::string& StateFolder();

// The same without making it: for those who only look.
std::string StateFolderName();

using Settings = std::vector<std::pair<std::string, std::string>>;

bool IsHeading(std::string_view name);

// A value as it stands in a line, and back. False when a backslash is followed by anything but what
// Escape writes.
std::string Escape(std::string_view text);
bool Unescape(std::string_view text, std::string* out);

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

// As SaveSettings for a file of any text.
bool SaveText(const std::string& path, std::string_view text);

// One state file of several that are saved together.
struct StateFile
{
    std::string name;  // in the folder, without a slash
    Settings settings;
};

// As SaveSettings for several files of one folder: after a crash or a power cut FinishSave finds all
// of them new or all of them old. False with errno when they could not be written; all old then,
// unless the note that makes them count stays, for the next SaveTogether or FinishSave to find.
bool SaveTogether(const std::string& folder, const std::vector<StateFile>& files);

// Completes what SaveTogether had decided before the process died. Called before files are loaded.
// False with errno when it could not.
bool FinishSave(const std::string& folder);

// Where the file lies that counts: beside `path` as long as a decided commit could not be finished.
std::string WhatCounts(const std::string& path);

// Moves a damaged file aside so that nobody writes over it. Its new name, empty when that failed.
std::string KeepAside(const std::string& path);

// Gives a file that is going to be replaced such a name, too; moves it where it can have but one.
std::string KeepCopy(const std::string& path);

// One line to the journal of the host platform: what a router would have done, and with which argument. A line
// is lost, and the log says so, where memory runs out. A journal of more
// than 1 MiB is moved to "journal.1" in the place of an earlier one, so that both stay bounded.
void Journal(std::string_view what, std::string_view argument = {});
}  // namespace kobd::host
