// The file behind a shared store, its lock, and what is reported when either fails.
#include "host/state/shared_store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <new>

#include "host/state/report.h"
#include "host/state/state_save.h"

namespace kobd::host
{
namespace
{
constexpr const char* kFunction = "SharedStore";
constexpr std::chrono::seconds kLockWait{2};  // a stopped process must not stop the others
constexpr long kLookNs = 1000000;

// Held from construction to destruction; the kernel gives it back when the process dies.
class StoreLock
{
public:
    explicit StoreLock(const std::string& path) : file_(OpenOrCreate(path, O_RDWR))
    {
        const auto deadline = std::chrono::steady_clock::now() + kLockWait;
        while (file_ >= 0 && !(held_ = flock(file_, LOCK_EX | LOCK_NB) == 0))
        {
            if (errno != EWOULDBLOCK && errno != EINTR) return;
            if (std::chrono::steady_clock::now() >= deadline) return;
            const timespec pause = {0, kLookNs};
            nanosleep(&pause, nullptr);
        }
    }
    ~StoreLock()
    {
        if (file_ >= 0) close(file_);
    }
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    bool Held() const { return held_; }  // errno says why not

private:
    int file_;
    bool held_ = false;
};

// The setting of that key; where a hand-edited file has two, the last one counts.
Settings::iterator Find(Settings& settings, std::string_view key)
{
    const auto last =
        std::find_if(settings.rbegin(), settings.rend(), [&](const auto& one) { return one.first == key; });
    return last == settings.rend() ? settings.end() : std::prev(last.base());
}

// A key must survive the file: no line end, no "=", no comment; and it is printed in messages.
bool IsKey(std::string_view key)
{
    return !key.empty() && key.size() <= kStoreKeyMax && key.front() != '#' &&
           std::all_of(key.begin(), key.end(), [](char c) { return c > ' ' && c <= '~' && c != '='; });
}

// Reads a store under its lock. False when the file there must not be replaced: it cannot be read,
// or it is damaged and cannot be moved aside.
bool LoadForChange(const std::string& path, Settings* settings)
{
    const LoadResult result = LoadSettings(path, settings);
    if (result == LoadResult::kUnreadable) return false;
    if (result != LoadResult::kDamaged) return true;
    const std::string aside = KeepAside(path);
    REPORT(kFunction, "%s is damaged, kept as %s, factory values serve", path.c_str(),
           aside.empty() ? "it is" : aside.c_str());
    return !aside.empty();
}
}  // namespace

std::string SharedStore::Path() const { return StateFolder() + "/" + file_; }

std::string_view SharedStore::Factory(std::string_view key) const
{
    const auto found = std::find_if(factory_.begin(), factory_.end(), [&](const auto& one) { return one.key == key; });
    return found == factory_.end() ? std::string_view() : found->value;
}

bool SharedStore::Change(Settings* settings, std::string_view key, std::string_view value) const
{
    const auto found = Find(*settings, key);
    const std::string_view factory = Factory(key);
    if (found != settings->end() && found->second == value) return false;
    if (found != settings->end())
        found->second = value;
    else if (factory.data() != nullptr && factory == value)
        return false;
    else
        settings->emplace_back(key, value);
    return true;
}

int SharedStore::Get(const char* key, char* value, size_t size) const
try
{
    *value = 0;
    Settings settings;
    const LoadResult result = LoadSettings(Path(), &settings);
    if (result == LoadResult::kUnreadable)
        REPORT(kFunction, "cannot read %s (%s), factory values serve", Path().c_str(), strerror(errno));
    if (result == LoadResult::kDamaged)
    {
        const StoreLock lock(Path() + ".lock");
        if (lock.Held()) LoadForChange(Path(), &settings);  // another process may have been first
    }
    const auto found = Find(settings, key);
    const std::string_view text = found != settings.end() ? std::string_view(found->second) : Factory(key);
    if (text.data() == nullptr)
    {
        errno = ENOENT;
        return -1;
    }
    const size_t length = std::min(text.size(), size - 1);
    memcpy(value, text.data(), length);
    value[length] = 0;
    return 0;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory(kFunction, -1);
}

int SharedStore::Set(const char* key, const char* value) const
try
{
    if (!IsKey(key) || strlen(value) > kStoreValueMax) return -1;
    const std::string path = Path();
    const StoreLock lock(path + ".lock");
    if (!lock.Held())
    {
        REPORT(kFunction, "cannot lock %s: %s", path.c_str(), strerror(errno));
        return -1;
    }
    Settings settings;
    if (LoadForChange(path, &settings) && (!Change(&settings, key, value) || SaveSettings(path, settings))) return 0;
    REPORT(kFunction, "cannot write %s: %s", path.c_str(), strerror(errno));
    return -1;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory(kFunction, -1);
}
}  // namespace kobd::host
