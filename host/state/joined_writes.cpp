// A layer between SQLite and its own file system, for the write-ahead log alone. Writes that follow one another are
// held until the log is synced or anything else is asked of it. A commit syncs the log before it tells other processes
// of its pages, so that nobody looks for bytes that are held.
#include "host/state/joined_writes.h"

#include <sqlite3.h>

#include <array>
#include <cstring>

namespace kobd::host
{
namespace
{
constexpr int kHeldBytes = 4 * 1024;  // three pages with their headers: most commits write two

// The log. Only the daemon's connection has one, so that one room serves.
struct Log
{
    sqlite3_file file;  // first: SQLite knows the log by it
    sqlite3_int64 start;
    int held;
    sqlite3_file* below() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
std::array<char, kHeldBytes> room;

Log* LogOf(sqlite3_file* file) { return reinterpret_cast<Log*>(file); }

// Writes what is held. After a failure it is held no longer: SQLite gives the transaction up.
int WriteHeld(Log* log)
{
    const int held = log->held;
    log->held = 0;
    return held == 0 ? SQLITE_OK : log->below()->pMethods->xWrite(log->below(), room.data(), held, log->start);
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
    Log* log = LogOf(file);
    const bool follows = log->held != 0 && place == log->start + log->held;
    if ((log->held != 0 && !follows) || count > kHeldBytes - log->held)
        if (const int code = WriteHeld(log)) return code;
    if (count > kHeldBytes) return log->below()->pMethods->xWrite(log->below(), bytes, count, place);
    if (log->held == 0) log->start = place;
    memcpy(room.data() + log->held, bytes, static_cast<size_t>(count));
    log->held += count;
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

using Methods = sqlite3_io_methods;
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

int Open(sqlite3_vfs* files, const char* path, sqlite3_file* file, int flags, int* flags_then)
{
    auto* system = static_cast<sqlite3_vfs*>(files->pAppData);
    if ((flags & SQLITE_OPEN_WAL) == 0) return system->xOpen(system, path, file, flags, flags_then);
    Log* log = LogOf(file);
    *log = {};
    const int code = system->xOpen(system, path, log->below(), flags, flags_then);
    if (log->below()->pMethods != nullptr) log->file.pMethods = &kMethods;
    return code;
}
}  // namespace

const char* JoinedWrites()
{
    static sqlite3_vfs files = {};
    if (files.zName != nullptr) return files.zName;
    // State lets one thread at a time use SQLite, and nobody asks how much memory it has. It keeps its own locks and
    // counts where it has been used before, as in a test.
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
