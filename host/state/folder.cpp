// The host platform's files: the folder they are in, whole replacement, and the journal.
#include "host/state/folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <new>

#include "host/state/report.h"

namespace kobd::host
{
namespace
{
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr off_t kJournalBytes = 1024 * 1024;  // about ten thousand lines; one more file of that size is kept
constexpr const char* kTemporary = ".new";

void MakeFolders(const std::string& path)
{
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), kFolderMode);
    mkdir(path.c_str(), kFolderMode);
}

// A relative KOBD_STATE_DIR counts from where the program was started. It becomes absolute before
// main runs: the daemon leaves that folder when it detaches, and the uci that it starts from its new
// one must find the same state.
[[gnu::constructor]] void FixStateFolder()
{
    const char* named = getenv("KOBD_STATE_DIR");
    if (named == nullptr || *named == 0 || *named == '/') return;
    char* folder = getcwd(nullptr, 0);
    if (folder != nullptr) setenv("KOBD_STATE_DIR", (std::string(folder) + "/" + named).c_str(), 1);
    free(folder);
}

// The folder of a path, ending with a slash; "." where it names none.
std::string FolderOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string& UsedFolder()
{
    static std::string folder;
    return folder;
}

bool WriteAll(int file, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

// Removes a file and leaves errno, which says what went wrong before.
void RemoveKeepingError(const std::string& path)
{
    const int error = errno;
    unlink(path.c_str());
    errno = error;
}

// Whether the new file is the folder's owner's, made so where root works in the folder of a user.
bool IsOfFolderOwner(int file, const std::string& path_of_folder)
{
    struct stat folder = {};
    if (geteuid() != 0) return true;
    if (stat(path_of_folder.c_str(), &folder) != 0) return false;
    return folder.st_uid == 0 || fchown(file, folder.st_uid, folder.st_gid) == 0;
}

// A file that nobody had before, so that its owner may be changed: -1 with errno EEXIST where there is one.
int CreateNew(const std::string& path, int flags)
{
    const std::string folder = FolderOf(path);  // before the file is open: memory may run out
    const int file = open(path.c_str(), flags | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
    if (file < 0 || IsOfFolderOwner(file, folder)) return file;
    RemoveKeepingError(path);
    const int error = errno;
    close(file);
    errno = error;
    return -1;
}

// A file that lies there already is replaced: it may be of another mode, a link, or somebody else's.
int CreateFresh(const std::string& path)
{
    const int file = CreateNew(path, O_WRONLY);
    if (file >= 0 || errno != EEXIST || unlink(path.c_str()) != 0) return file;
    return CreateNew(path, O_WRONLY);
}

// Closes the file, when memory runs out as well.
struct OpenFile
{
    int number;
    ~OpenFile() { close(number); }
};

// Writes the file and waits until it is on the disk. False with errno, and no file, when that failed.
bool WriteTemporary(const std::string& path, std::string_view text)
{
    const int file = CreateFresh(path);
    if (file < 0) return false;
    const bool written = WriteAll(file, text) && fsync(file) == 0;
    const int error = errno;
    const bool closed = close(file) == 0;
    if (written && closed) return true;
    if (!written) errno = error;
    RemoveKeepingError(path);
    return false;
}
}  // namespace

std::string StateFolderName()
{
    if (!UsedFolder().empty()) return UsedFolder();
    const char* named = getenv("KOBD_STATE_DIR");
    const char* home = getenv("HOME");
    std::string folder = named != nullptr && *named != 0 ? named
                         : geteuid() == 0                ? "/etc/kobd"
                         : home != nullptr               ? std::string(home) + "/.local/state/kobd"
                                                         : "/tmp/kobd-state-" + std::to_string(geteuid());
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
}

const std::string& StateFolder()
{
    if (UsedFolder().empty()) UseStateFolder(StateFolderName());
    return UsedFolder();
}

void UseStateFolder(const std::string& folder)
{
    MakeFolders(folder);
    UsedFolder() = folder;
}

std::string Escape(std::string_view text)
{
    std::string out;
    for (const char c : text)
    {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else
            out += c;
    }
    return out;
}

bool Unescape(std::string_view text, std::string* out)
{
    for (size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] != '\\')
        {
            *out += text[i];
            continue;
        }
        if (++i == text.size()) return false;
        if (text[i] == 'n')
            *out += '\n';
        else if (text[i] == 'r')
            *out += '\r';
        else if (text[i] == '\\')
            *out += '\\';
        else
            return false;
    }
    return true;
}

bool ReadText(const std::string& path, std::string* text)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    const OpenFile closed_at_the_end{file};
    char block[8192];
    for (;;)
    {
        const ssize_t got = read(file, block, sizeof block);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) return true;
        text->append(block, static_cast<size_t>(got));
    }
}

bool SyncFolder(const std::string& folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return false;
    const bool synced = fsync(file) == 0;
    const int error = errno;
    close(file);
    errno = error;
    return synced;
}

bool SaveText(const std::string& path, std::string_view text)
{
    const std::string temporary = path + kTemporary;
    const std::string folder = FolderOf(path);  // before the move: memory may run out
    if (!WriteTemporary(temporary, text)) return false;
    if (rename(temporary.c_str(), path.c_str()) == 0) return SyncFolder(folder);
    RemoveKeepingError(temporary);
    return false;
}

int OpenOrCreate(const std::string& path, int flags, bool* made)
{
    for (;;)
    {
        int file = open(path.c_str(), flags | O_NOFOLLOW | O_CLOEXEC);
        if (file >= 0 || errno != ENOENT) return file;
        file = CreateNew(path, flags);
        if (file >= 0 && made != nullptr) *made = true;
        if (file >= 0 || errno != EEXIST) return file;
    }
}

std::string KeepAside(const std::string& path)
{
    const std::string stem = path + ".damaged-" + std::to_string(time(nullptr));
    std::string aside = stem;
    for (int next = 2; access(aside.c_str(), F_OK) == 0; ++next) aside = stem + "-" + std::to_string(next);
    if (rename(path.c_str(), aside.c_str()) != 0) aside.clear();
    return aside;
}

void Journal(std::string_view what, std::string_view argument)
try
{
    const std::string path = StateFolder() + "/journal";
    const std::string aside = path + ".1";
    std::string line = Escape(what);
    if (argument.data() != nullptr) line += " " + Escape(argument);
    line += '\n';
    const int file = OpenOrCreate(path, O_WRONLY | O_APPEND);
    if (file < 0) return;
    WriteAll(file, line);
    const bool large = lseek(file, 0, SEEK_END) > kJournalBytes;
    close(file);
    if (large) rename(path.c_str(), aside.c_str());
}
catch (const std::bad_alloc&)
{
    OutOfMemory("Journal", 0);
}
}  // namespace kobd::host
