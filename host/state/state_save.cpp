// Saving state files. Several are saved together by first writing all of them beside the old ones,
// then a note that names them: from the moment the note is on the disk the new files count, and
// whoever finds it moves them into place.
#include "host/state/state_save.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace kobd::host
{
namespace
{
constexpr const char* kTemporary = ".new";
constexpr const char* kNoteFile = "/commit";

// A note may lie in the folder: nobody has looked yet, or it could not be removed for good. Only this
// process writes notes, so that once it is known to be gone no commit has to look again.
bool note_may_lie_there = true;

bool SyncFolder(const std::string& folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return false;
    const bool synced = fsync(file) == 0;
    close(file);
    return synced;
}

bool MoveIntoPlace(const std::string& temporary, const std::string& path)
{
    if (rename(temporary.c_str(), path.c_str()) == 0) return true;
    RemoveKeepingError(temporary);
    return false;
}

bool WriteAllTemporary(const std::string& folder, const std::vector<StateFile>& files)
{
    return std::all_of(files.begin(), files.end(),
                       [&folder](const StateFile& file)
                       { return WriteTemporary(folder + "/" + file.name + kTemporary, file.settings); });
}

bool WriteNote(const std::string& folder, const std::vector<StateFile>& files)
{
    Settings note;
    for (const StateFile& file : files) note.emplace_back(file.name, "");
    return SaveSettings(folder + kNoteFile, note);
}

// A note that is damaged may name anything; what it cannot have meant must not keep the daemon from
// ever committing again.
bool IsFileName(std::string_view name) { return name.find_first_of(std::string_view("/\0", 2)) == name.npos; }

// The note must be gone from the disk before anybody writes temporary files again: a note that
// outlives its commit would move half-written files into place.
bool RemoveNote(const std::string& folder)
{
    const bool gone = unlink((folder + kNoteFile).c_str()) == 0 || errno == ENOENT;
    note_may_lie_there = !gone || !SyncFolder(folder);
    return !note_may_lie_there;
}

bool NoNoteIsLeft(const std::string& folder)
{
    if (note_may_lie_there && !FinishSave(folder)) return false;
    // One that was removed, but by a process that died before it was gone from the disk.
    if (note_may_lie_there) note_may_lie_there = !SyncFolder(folder);
    return !note_may_lie_there;
}

void RemoveTemporary(const std::string& folder, const std::vector<StateFile>& files)
{
    for (const StateFile& file : files) RemoveKeepingError(folder + "/" + file.name + kTemporary);
}
}  // namespace

bool SaveSettings(const std::string& path, const Settings& settings)
{
    const std::string temporary = path + kTemporary;
    const std::string folder = FolderOf(path);  // before the move: memory may run out
    return WriteTemporary(temporary, settings) && MoveIntoPlace(temporary, path) && SyncFolder(folder);
}

bool SaveText(const std::string& path, std::string_view text)
{
    const std::string temporary = path + kTemporary;
    return WriteText(temporary, text) && MoveIntoPlace(temporary, path) && SyncFolder(FolderOf(path));
}

bool SaveTogether(const std::string& folder, const std::vector<StateFile>& files)
{
    if (files.empty()) return true;
    if (!NoNoteIsLeft(folder)) return false;
    if (files.size() == 1) return SaveSettings(folder + "/" + files[0].name, files[0].settings);
    if (!WriteAllTemporary(folder, files))
    {
        RemoveTemporary(folder, files);
        return false;
    }
    note_may_lie_there = true;
    if (!WriteNote(folder, files))
    {
        // It may have got its name before that: a note that stays must find all files or none.
        const int error = errno;
        if (RemoveNote(folder)) RemoveTemporary(folder, files);
        errno = error;
        return false;
    }
    // A file that cannot be moved now is moved by whoever finds the note next.
    for (const StateFile& file : files)
    {
        const std::string path = folder + "/" + file.name;
        if (rename((path + kTemporary).c_str(), path.c_str()) != 0) return false;
    }
    return SyncFolder(folder) && RemoveNote(folder);
}

bool FinishSave(const std::string& folder)
{
    Settings note;
    const LoadResult result = LoadSettings(folder + kNoteFile, &note);
    if (result == LoadResult::kMissing) return true;
    if (result == LoadResult::kUnreadable) return false;
    for (const auto& [name, nothing] : note)
    {
        const std::string path = folder + "/" + name;
        if (!IsFileName(name) || access((path + kTemporary).c_str(), F_OK) != 0) continue;
        if (rename((path + kTemporary).c_str(), path.c_str()) != 0) return false;
    }
    return SyncFolder(folder) && RemoveNote(folder);
}

std::string WhatCounts(const std::string& path)
{
    const bool decided = access((FolderOf(path) + kNoteFile).c_str(), F_OK) == 0;
    return decided && access((path + kTemporary).c_str(), F_OK) == 0 ? path + kTemporary : path;
}
}  // namespace kobd::host
