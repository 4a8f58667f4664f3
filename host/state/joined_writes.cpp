// A layer between SQLite and its own file system, for the write-ahead log alone. Writes that follow one another are
// held until the log is synced or anything else is asked of it. A commit syncs the log before it tells other processes
// of its pages, so that nobody looks for bytes that are held. What a transaction that was given up has left behind is
// dropped before its lock is released: another process may write there then.
#include "host/state/joined_writes.h"

#include <sqlite3.h>

#include <array>
#include <cstring>

namespace kobd::host
{
namespace
{
using Methods = sqlite3_io_methods;

constexpr int kWriteLock = 0;  // the place of its lock in the log's index, https://sqlite.org/walformat.html

struct Held
{
    std::array<char, 4096> bytes;  // three pages with their headers: most commits write two
    int count = 0;
    sqlite3_int64 start = 0;  // where in the log
};
Held held;  // of the one connection

// The log, with SQLite's own file behind it.
struct Log
{
    sqlite3_file file;
    sqlite3_file* below() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

Log* LogOf(sqlite3_file* file) { return reinterpret_cast<Log*>(file); }

// Writes what is held. After a failure it is held no longer: SQLite gives the transaction up.
int WriteHeld(Log* log)
{
    const int count = held.count;
    held.count = 0;
    return count == 0 ? SQLITE_OK : log->below()->pMethods->xWrite(log->below(), held.bytes.data(), count, held.start);
}

// Calls a method of the file below, when all that was held is written.
template <auto method, typename... Values>
int Below(sqlite3_file* file, Values... values)
{
    Log* log = LogOf(file);
    const int code = WriteHeld(log);
    return code != SQLITE_OK ? code : (log->below()->pMethods->*method)(log->below(), values...);
}

int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 place)
{
    constexpr int kRoom = static_cast<int>(sizeof held.bytes);
    Log* log = LogOf(file);
    if (place != held.start + held.count || count > kRoom - held.count)
        if (const int code = WriteHeld(log)) return code;
    if (count > kRoom) return log->below()->pMethods->xWrite(log->below(), bytes, count, place);
    if (held.count == 0) held.start = place;
    memcpy(held.bytes.data() + held.count, bytes, static_cast<size_t>(count));
    held.count += count;
    return SQLITE_OK;
}

int Close(sqlite3_file* file)
{
    const int code = WriteHeld(LogOf(file));
    const int closed = LogOf(file)->below()->pMethods->xClose(LogOf(file)->below());
    return code != SQLITE_OK ? code : closed;
}

int SectorSize(sqlite3_file* file)
{
    sqlite3_file* below = LogOf(file)->below();
    return below->pMethods->xSectorSize(below);
}

int Characteristics(sqlite3_file* file)
{
    sqlite3_file* below = LogOf(file)->below();
    return below->pMethods->xDeviceCharacteristics(below);
}

// Those of the first version: the log is neither mapped nor shared.
constexpr Methods kMethods = {
    1,
    Close,
    Below<&Methods::xRead>,
    Write,
    Below<&Methods::xTruncate>,
    Below<&Methods::xSync>,
    Below<&Methods::xFileSize>,
    Below<&Methods::xLock>,
    Below<&Methods::xUnlock>,
    Below<&Methods::xCheckReservedLock>,
    Below<&Methods::xFileControl>,
    SectorSize,
    Characteristics,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

const Methods* systems = nullptr;  // of the database's own file

int LockIndex(sqlite3_file* file, int first, int count, int flags)
{
    constexpr int kUnlock = SQLITE_SHM_UNLOCK | SQLITE_SHM_EXCLUSIVE;
    if ((flags & kUnlock) == kUnlock && first <= kWriteLock && kWriteLock < first + count) held.count = 0;
    return systems->xShmLock(file, first, count, flags);
}

int Open(sqlite3_vfs* files, const char* path, sqlite3_file* file, int flags, int* flags_then)
{
    static Methods watched;
    auto* system = static_cast<sqlite3_vfs*>(files->pAppData);
    const bool is_log = (flags & SQLITE_OPEN_WAL) != 0;
    sqlite3_file* below = is_log ? LogOf(file)->below() : file;
    if (is_log) file->pMethods = nullptr;  // unless it is opened
    const int code = system->xOpen(system, path, below, flags, flags_then);
    if (below->pMethods == nullptr) return code;
    if (is_log) file->pMethods = &kMethods;
    if ((flags & SQLITE_OPEN_MAIN_DB) == 0) return code;
    systems = below->pMethods;
    watched = *systems;
    watched.xShmLock = LockIndex;
    below->pMethods = &watched;
    return code;
}
}  // namespace

const char* JoinedWrites()
{
    static sqlite3_vfs files = {};
    if (files.zName != nullptr) return files.zName;
    // State lets one thread at a time use SQLite, which needs no locks of its own then. Nobody asks how much memory it
    // has. Both are settings for speed alone: SQLite refuses them where it was used before, and goes on as it was.
    sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
    if (system == nullptr) return nullptr;
    files = *system;
    files.szOsFile += static_cast<int>(sizeof(Log));
    files.pAppData = system;
    files.pNext = nullptr;
    files.zName = "kobd";
    files.xOpen = Open;
    if (sqlite3_vfs_register(&files, 0) == SQLITE_OK) return files.zName;
    files.zName = nullptr;
    return nullptr;
}
}  // namespace kobd::host
