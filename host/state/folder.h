// The state folder, the files in it that people read, and what keeps a file whole.
#pragma once

#include <string>
#include <string_view>

namespace kobd::host
{
// The state folder, absolute, ending without a slash: the one that was chosen by UseStateFolder, else KOBD_STATE_DIR,
// else /etc/kobd for root, else a folder of the user's. Created when missing.
const std::string& StateFolder();

// The same without making it: for those who only look.
std::string StateFolderName();

// Uses another folder from here on, for a program that has asked the daemon for its folder.
void UseStateFolder(const std::string& folder);

// A value as it stands in a line, and back. False when a backslash is followed by anything but what
// Escape writes.
std::string Escape(std::string_view text);
bool Unescape(std::string_view text, std::string* out);

// Reads a whole file. False with errno.
bool ReadText(const std::string& path, std::string* text);

// Replaces the file by a temporary file, fsync, rename and fsync of the folder: after a power cut
// there is the old or the new file, whole. False with errno when it could not be written; the old
// file then stays.
bool SaveText(const std::string& path, std::string_view text);

// Opens a file of the state folder with these flags (without O_CREAT), mode 0600 when it has to be made first, which
// `made` says. No link is followed: root may be working in the folder of a user. A file that root makes there is the
// folder's owner's, whose daemon has to read it. -1 with errno.
int OpenOrCreate(const std::string& path, int flags, bool* made = nullptr);

// Moves a damaged file aside so that nobody writes over it. Its new name, empty when that failed.
std::string KeepAside(const std::string& path);

// Waits until the names of the folder's files are on the disk. False with errno.
bool SyncFolder(const std::string& folder);

// One line to the journal of the host platform: what a router would have done, and with which argument. A line
// is lost, and the log says so, where memory runs out. A journal of more
// than 1 MiB is moved to "journal.1" in the place of an earlier one, so that both stay bounded.
void Journal(std::string_view what, std::string_view argument = {});
}  // namespace kobd::host
