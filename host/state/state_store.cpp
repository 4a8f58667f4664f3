// The host platform's files: state, journal and the folder they are in.
#include "host/state/state_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <new>

#include "host/state/report.h"
#include "host/state/state_save.h"

namespace kobd::host
{
namespace
{
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr off_t kJournalBytes = 1024 * 1024;  // about ten thousand lines; one more file of that size is kept
constexpr std::string_view kHeading = "# Settings that differ from the factory's. Edit while the daemon is stopped.\n";
constexpr std::string_view kEnd = "end";

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

}  // namespace

std::string FolderOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string StateFolderName()
{
    const char* named = getenv("KOBD_STATE_DIR");
    const char* home = getenv("HOME");
    std::string folder = named != nullptr && *named != 0 ? named
                         : geteuid() == 0                ? "/etc/kobd"
                         : home != nullptr               ? std::string(home) + "/.local/state/kobd"
                                                         : "/tmp/kobd-state-" + std::to_string(geteuid());
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
}

namespace
{
std::string ChooseFolder()
{
    const std::string folder = StateFolderName();
    MakeFolders(folder);
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

bool ReadAll(int file, std::string* text)
{
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

void AppendEscaped(std::string_view text, std::string* out)
{
    for (const char c : text)
    {
        if (c == '\\')
            *out += "\\\\";
        else if (c == '\n')
            *out += "\\n";
        else if (c == '\r')
            *out += "\\r";
        else
            *out += c;
    }
}

// False when a line is neither comment, heading, setting nor the end, or the end is missing.
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
        if (IsHeading(line))
        {
            settings->emplace_back(line, "");
            continue;
        }
        const size_t equals = line.find('=');
        std::string value;
        if (equals == std::string_view::npos || equals == 0 || IsHeading(line.substr(0, equals)) ||
            !Unescape(line.substr(equals + 1), &value))
            return false;
        settings->emplace_back(line.substr(0, equals), value);
    }
    return false;
}

}  // namespace

const std::string& StateFolder()
{
    static const std::string folder = ChooseFolder();
    return folder;
}

std::string Escape(std::string_view text)
{
    std::string out;
    AppendEscaped(text, &out);
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

bool IsHeading(std::string_view name) { return name.size() > 2 && name.front() == '[' && name.back() == ']'; }

LoadResult LoadSettings(const std::string& path, Settings* settings)
{
    settings->clear();
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return errno == ENOENT ? LoadResult::kMissing : LoadResult::kUnreadable;
    const OpenFile closed_at_the_end{file};
    std::string text;
    if (!ReadAll(file, &text)) return LoadResult::kUnreadable;
    if (ParseSettings(text, settings)) return LoadResult::kLoaded;
    settings->clear();
    return LoadResult::kDamaged;
}

bool WriteTemporary(const std::string& path, const Settings& settings)
{
    std::string text(kHeading);
    for (const auto& [name, value] : settings)
    {
        text += name;
        if (!IsHeading(name))
        {
            text += '=';
            AppendEscaped(value, &text);
        }
        text += '\n';
    }
    text.append(kEnd).append("\n");
    return WriteText(path, text);
}

int OpenOrCreate(const std::string& path, int flags)
{
    for (;;)
    {
        int file = open(path.c_str(), flags | O_NOFOLLOW | O_CLOEXEC);
        if (file >= 0 || errno != ENOENT) return file;
        file = CreateNew(path, flags);
        if (file >= 0 || errno != EEXIST) return file;
    }
}

bool WriteText(const std::string& path, std::string_view text)
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

void RemoveKeepingError(const std::string& path)
{
    const int error = errno;
    unlink(path.c_str());
    errno = error;
}

namespace
{
// A name beside the file's that nothing has.
std::string NameAside(const std::string& path)
{
    const std::string stem = path + ".damaged-" + std::to_string(time(nullptr));
    std::string aside = stem;
    for (int next = 2; access(aside.c_str(), F_OK) == 0; ++next) aside = stem + "-" + std::to_string(next);
    return aside;
}
}  // namespace

std::string KeepAside(const std::string& path)
{
    std::string aside = NameAside(path);
    if (rename(path.c_str(), aside.c_str()) != 0) aside.clear();
    return aside;
}

std::string KeepCopy(const std::string& path)
{
    const std::string aside = NameAside(path);
    if (link(path.c_str(), aside.c_str()) == 0) return aside;
    return errno == ENOENT ? std::string() : KeepAside(path);  // a file system without links, or a folder
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
