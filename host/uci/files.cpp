// Loading, staging and committing.
#include "host/uci/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "host/state/folder.h"

namespace kobd::host
{
namespace
{
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kLockMode = 0600;
constexpr unsigned kLockSeconds = 10;
constexpr const char* kStaged = ".staged";

std::string Folder() { return StateFolder() + "/uci"; }
std::string CommittedPath(const std::string& config) { return Folder() + "/" + config; }
std::string StagedPath(const std::string& config) { return CommittedPath(config) + kStaged; }

// False, for the caller to return.
bool Complain(const char* what, const std::string& path, int error)
{
    fprintf(stderr, "uci: cannot %s %s: %s\n", what, path.c_str(), strerror(error));
    return false;
}

void StopWaiting(int) {}

UciLoad LoadFile(const std::string& path, Settings* settings)
{
    switch (LoadSettings(path, settings))
    {
        case LoadResult::kLoaded: return UciLoad::kLoaded;
        case LoadResult::kMissing: return UciLoad::kMissing;
        case LoadResult::kUnreadable: Complain("read", path, errno); return UciLoad::kUnusable;
        case LoadResult::kDamaged: break;
    }
    const std::string aside = KeepAside(path);
    if (aside.empty())
    {
        Complain("keep damaged file", path, errno);
        return UciLoad::kUnusable;
    }
    const std::string report = "uci: " + path + " is damaged, kept as " + aside;
    fprintf(stderr, "%s\n", report.c_str());
    Journal(report);  // the daemon reads with -q
    return UciLoad::kMissing;
}
}  // namespace

bool LockUci()
{
    mkdir(Folder().c_str(), kFolderMode);
    const std::string path = Folder() + "/.lock";
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kLockMode);
    if (file < 0) return Complain("open", path, errno);
    struct sigaction action = {};
    action.sa_handler = StopWaiting;  // without SA_RESTART: flock ends then
    sigaction(SIGALRM, &action, nullptr);
    alarm(kLockSeconds);
    const bool locked = flock(file, LOCK_EX) == 0;
    const int error = errno;
    alarm(0);
    return locked || Complain("lock", path, error == EINTR ? ETIMEDOUT : error);
}

UciLoad LoadUci(const std::string& config, Settings* settings)
{
    const UciLoad staged = LoadFile(StagedPath(config), settings);
    return staged == UciLoad::kMissing ? LoadFile(CommittedPath(config), settings) : staged;
}

bool StageUci(const std::string& config, const Settings& settings)
{
    const std::string path = StagedPath(config);
    return SaveSettings(path, settings) || Complain("write", path, errno);
}

bool CommitUci(const std::string& config)
{
    Settings settings;
    const UciLoad staged = LoadFile(StagedPath(config), &settings);
    if (staged == UciLoad::kUnusable) return false;
    if (staged == UciLoad::kMissing)
        return access(CommittedPath(config).c_str(), F_OK) == 0 || Complain("commit", config, errno);
    if (!SaveSettings(CommittedPath(config), settings)) return Complain("write", CommittedPath(config), errno);
    return unlink(StagedPath(config).c_str()) == 0 || Complain("remove", StagedPath(config), errno);
}

bool CommitAllUci()
{
    std::error_code error;
    std::vector<std::string> configs;
    for (std::filesystem::directory_iterator file(Folder(), error), end; !error && file != end; file.increment(error))
        if (file->path().extension() == kStaged) configs.push_back(file->path().stem());
    if (error) return Complain("list", Folder(), error.value());
    bool committed = true;
    for (const std::string& config : configs) committed = CommitUci(config) && committed;
    return committed;
}
}  // namespace kobd::host
