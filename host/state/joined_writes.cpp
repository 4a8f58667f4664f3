// A layer between SQLite and its own file system, for the write-ahead log alone. What a commit writes there is held
// until it syncs the log, which it does before other processes learn of its pages. A transaction that outgrows SQLite's
// cache writes pages before its commit, and may be given up after that: those are not held.
#include "host/state/joined_writes.h"

#include <sqlite3.h>

#include <array>
#include <cstring>

namespace kobd::host
{
namespace
{
using Methods = sqlite3_io_methods;

constexpr int kHeldBytes = 4096;  // three pages with their headers: most commits write two
std::array<char, kHeldBytes> held;
int held_bytes = 0;
sqlite3_int64 held_start = 0;  // where in the log
bool commits = false;

// The log, with SQLite's own file behind it.
struct alignas(sqlite3_int64) Log
{
    sqlite3_file file;
    sqlite3_file* below() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

Log* LogOf(sqlite3_file* file) { return reinterpret_cast<Log*>(file); }

// Writes what is held. Where that fails SQLite rolls the commit back, whichever of its calls is told.
int WriteHeld(Log* log)
{
    const int count = held_bytes;
    held_bytes = 0;
    return count == 0 ? SQLITE_OK : log->below()->pMethods->xWrite(log->below(), held.data(), count, held_start);
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
    if (place != held_start + held_bytes || count > kHeldBytes - held_bytes)
        if (const int code = WriteHeld(log)) return code;
    if (!commits || count > kHeldBytes) return log->below()->pMethods->xWrite(log->below(), bytes, count, place);
    if (held_bytes == 0) held_start = place;
    memcpy(held.data() + held_bytes, bytes, static_cast<size_t>(count));
    held_bytes += count;
    return SQLITE_OK;
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
    Below<&Methods::xClose>,
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
    const int code = system->xOpen(system, path, log->below(), flags, flags_then);
    file->pMethods = log->below()->pMethods != nullptr ? &kMethods : nullptr;
    return code;
}

void CommitBegins() { commits = true; }

// What is held by now belongs to a commit that was rolled back.
void CommitEnded()
{
    commits = false;
    held_bytes = 0;
}
}  // namespace

const DatabaseFiles* JoinedWrites()
{
    static sqlite3_vfs files = {};
    static constexpr DatabaseFiles kMade = {"kobd", CommitBegins, CommitEnded};
    if (files.zName != nullptr) return &kMade;
    // SQLite needs no locks here, because State lets only one thread use it at a time. It need not count its memory,
    // because nothing asks for the count. Where SQLite was used before, it refuses these settings and is a little
    // slower.
    sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
    if (system == nullptr) return nullptr;
    files = *system;
    files.szOsFile += static_cast<int>(sizeof(Log));
    files.pAppData = system;
    files.pNext = nullptr;
    files.zName = kMade.name;
    files.xOpen = Open;
    if (sqlite3_vfs_register(&files, 0) == SQLITE_OK) return &kMade;
    files.zName = nullptr;
    return nullptr;
}
}  // namespace kobd::host
