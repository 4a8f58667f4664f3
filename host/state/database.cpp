// SQLite behind the state folder: opening, statements, and what its failures mean.
#include "host/state/database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/state/folder.h"
#include "host/state/report.h"

namespace kobd::host
{
namespace
{
constexpr const char* kFunction = "Database";
constexpr const char* kFile = "/kobd.db";
constexpr int kWaitMs = 2000;            // for other processes: a stopped one must not stop the others
constexpr int kWaitAgainMs = 250;        // after a wait in vain
constexpr int kLookMs = 5;               // between looks at an empty file
constexpr off_t kLogBytes = 512 * 1024;  // room of the write-ahead log
constexpr const char* kOptions =
    // Bytes: a commit writes whole pages, and most change a few bytes of two.
    "PRAGMA page_size=1024; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
    "PRAGMA wal_autocheckpoint=440;"                     // pages of the log, at which it is written back: 450 KB
    "PRAGMA cache_size=-256; PRAGMA temp_store=MEMORY";  // KB, for the daemon's memory
constexpr int kSchemaVersion = 1;
constexpr const char* kSchema =
    "CREATE TABLE objects(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE lists(name TEXT PRIMARY KEY, last INTEGER NOT NULL) WITHOUT ROWID;"
    // field: a column's name; "@path": the parent path of a row without a column for it; "": always there, the bytes
    // that the columns do not say.
    "CREATE TABLE cells(list TEXT, number INTEGER, field TEXT, value NOT NULL,"
    " PRIMARY KEY(list, number, field)) WITHOUT ROWID;"
    "CREATE TABLE stores(store TEXT, key TEXT, value TEXT NOT NULL, PRIMARY KEY(store, key)) WITHOUT ROWID;"
    "CREATE TABLE pending(name TEXT PRIMARY KEY, old TEXT NOT NULL, new TEXT);"  // in the order of the words
    "CREATE TABLE refused(name TEXT PRIMARY KEY, old TEXT NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE meta(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;"
    // batch: the number of the commit; kind: object, row, nvram or config; no old or new text: it was not there.
    "CREATE TABLE history(id INTEGER PRIMARY KEY, batch INTEGER, time INTEGER, process INTEGER, program TEXT,"
    " kind TEXT, name TEXT, number INTEGER, field TEXT, old TEXT, new TEXT);"
    "PRAGMA user_version=1";

// SQLite's code as errno has it. The system's own number is still there where SQLite reports a failed call.
int ErrorOf(int code)
{
    switch (code & 0xFF)
    {
        case SQLITE_FULL: return ENOSPC;
        case SQLITE_NOMEM: return ENOMEM;
        case SQLITE_BUSY: return EWOULDBLOCK;
        case SQLITE_READONLY: return access(StateFolderName().c_str(), W_OK) != 0 ? errno : EROFS;
        case SQLITE_IOERR:
        case SQLITE_CANTOPEN: return errno != 0 ? errno : EIO;
        default: return EIO;
    }
}

std::string TextOf(sqlite3* connection, int code, int error)
{
    switch (code & 0xFF)
    {
        case SQLITE_BUSY: return "another process is writing it and has not ended in time";
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_ERROR: return connection != nullptr ? sqlite3_errmsg(connection) : sqlite3_errstr(code);
        default: return strerror(error);
    }
}

off_t SizeOf(const std::string& path)
{
    struct stat state = {};
    return stat(path.c_str(), &state) == 0 ? state.st_size : -1;
}

// Whether the database stands in a folder that cannot be written, and was closed before: SQLite would want to make the
// files beside it. Nobody can change it there, and nothing is missing in it.
bool IsFrozen(const std::string& folder, const std::string& path)
{
    return access(folder.c_str(), W_OK) != 0 && SizeOf(path) > 0 && SizeOf(path + "-wal") <= 0;
}

std::string FrozenAddress(const std::string& path)
{
    std::string address = "file:";
    for (const char letter : path)
    {
        char escaped[4];
        snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(letter)));
        const bool is_special = letter == '%' || letter == '?' || letter == '#';
        address += is_special ? std::string(escaped) : std::string(1, letter);
    }
    return address + "?immutable=1";
}
}  // namespace

Query::~Query()
{
    if (statement_ == nullptr) return;
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void Query::Bind(int place, std::string_view text)
{
    const char* bytes = text.data() != nullptr ? text.data() : "";
    const auto kept = texts_stay_ ? SQLITE_STATIC : SQLITE_TRANSIENT;
    if (statement_ != nullptr)
        database_->Note(sqlite3_bind_text(statement_, place, bytes, static_cast<int>(text.size()), kept));
}

void Query::Bind(int place, std::optional<std::string_view> text)
{
    if (text) Bind(place, *text);  // what is not bound is NULL
}

void Query::Bind(int place, int64_t number)
{
    if (statement_ != nullptr) database_->Note(sqlite3_bind_int64(statement_, place, number));
}

bool Query::Next()
{
    if (statement_ == nullptr || database_->Failed()) return false;
    errno = 0;
    const int code = sqlite3_step(statement_);
    return code == SQLITE_ROW || (code != SQLITE_DONE && database_->Note(code));
}

bool Query::IsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

std::string_view Query::Text(int column) const
{
    const void* bytes = sqlite3_column_blob(statement_, column);
    return {bytes != nullptr ? static_cast<const char*>(bytes) : "",
            static_cast<size_t>(sqlite3_column_bytes(statement_, column))};
}

int64_t Query::Number(int column) const { return sqlite3_column_int64(statement_, column); }

bool Database::Fail(int error, const std::string& why, bool damaged)
{
    error_ = error;
    why_ = why;
    damaged_ = damaged;
    return false;
}

bool Database::Note(int code)
{
    if (code == SQLITE_OK) return true;
    const int error = ErrorOf(code);
    const bool damaged = (code & 0xFF) == SQLITE_CORRUPT || (code & 0xFF) == SQLITE_NOTADB;
    if ((code & 0xFF) == SQLITE_BUSY) WaitAtMost(kWaitAgainMs);
    return Fail(error, TextOf(connection_, code, error), damaged);
}

std::string Database::Why() const { return why_; }

sqlite3_stmt* Database::Prepared(const char* sql)
{
    if (!writing_) error_ = 0;
    errno = 0;
    if (connection_ == nullptr && !Failed()) Note(SQLITE_MISUSE);
    if (Failed()) return nullptr;
    sqlite3_stmt*& statement = prepared_[sql];
    if (statement == nullptr)
        Note(sqlite3_prepare_v3(connection_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    return statement;
}

int64_t Database::LastRow() const { return sqlite3_last_insert_rowid(connection_); }

bool Database::Begin()
{
    error_ = 0;
    writing_ = Run("BEGIN IMMEDIATE");
    if (writing_) WaitAtMost(kWaitMs);
    return writing_;
}

bool Database::RunCommit()
{
    if (Prepared("COMMIT") == nullptr) return false;  // first: memory may run out
    if (files_ != nullptr) files_->commit_begins();
    const bool committed = Run("COMMIT");
    if (files_ != nullptr) files_->commit_ended();
    return committed;
}

bool Database::Commit()
{
    if (writing_ && !Failed() && RunCommit())
    {
        writing_ = false;
        return true;
    }
    Rollback();
    return false;
}

void Database::Rollback()
{
    if (!writing_) return;
    writing_ = false;
    // SQLite may have rolled back by itself, which is as good.
    sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
}

// Whether the name is another file's by now, or the file was emptied, which SQLite sees only when it reads a page. The
// log of an emptied file must not be written back to it: it goes aside with the file.
bool Database::IsAnother()
{
    int moved = 0;
    sqlite3_file_control(connection_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    const bool emptied = SizeOf(path_) == 0;
    if (emptied) sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    return moved != 0 || emptied;
}

void Database::WaitAtMost(int milliseconds)
{
    if (wait_ms_ != milliseconds) sqlite3_busy_timeout(connection_, milliseconds);
    wait_ms_ = milliseconds;
}

bool Database::Open(bool create)
{
    const bool is_read_only = connection_ != nullptr && sqlite3_db_readonly(connection_, "main") == 1;
    if (connection_ != nullptr && !IsAnother() && !(create && is_read_only)) return true;
    Close();
    const bool opened = OpenFile(create) || (create && KeepDamagedAside() && OpenFile(true));
    if (opened)
    {
        ++openings_;
        looks_ = kLooks;
    }
    else
        Close();
    return opened;
}

// The size in bytes, -1 where there is no file. It is empty for a moment while another process makes it, and stays so
// where the disk is full: it is waited for once until it could be opened.
off_t Database::SizeOnceMade()
{
    off_t size = SizeOf(path_);
    for (; size == 0 && SizeOf(path_ + "-wal") <= 0 && looks_ > 0; --looks_)
    {
        usleep(kLookMs * 1000);
        size = SizeOf(path_);
    }
    return size;
}

// The path without links, since SQLite is told to follow none.
bool Database::OpenFile(bool create)
{
    error_ = 0;
    char real[PATH_MAX];
    const std::string folder = create ? StateFolder() : StateFolderName();
    if (create) UseStateFolder(folder);  // it may have been removed under the daemon
    path_ = std::string(realpath(folder.c_str(), real) != nullptr ? real : folder) + kFile;
    const off_t size = create ? SizeOnceMade() : SizeOf(path_);
    if (size == 0 && SizeOf(path_ + "-wal") > 0)  // emptied: SQLite would remove the log, which has what was committed
        return Note(SQLITE_NOTADB);
    if (size < 0 && create) KeepLogAside();
    if (size == 0 && !create) return Fail(ENOENT, strerror(ENOENT), false);
    if (size == 0) REPORT(kFunction, "%s is empty, factory values serve", path_.c_str());
    bool made = false;
    int file = create ? OpenOrCreate(path_, O_RDWR, &made) : open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    // What cannot be written may still be read: a router must find its settings on a disk that has become read-only.
    if (file < 0 && (errno == EROFS || errno == EACCES)) file = open(path_.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return Fail(errno, strerror(errno), errno == EISDIR || errno == ELOOP);
    close(file);
    if (made)
    {
        SyncFolder(folder);
        looks_ = 0;  // nobody else makes it
    }
    errno = 0;
    constexpr int kFlags = SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX;
    const bool frozen = IsFrozen(folder, path_);
    const int code = frozen ? sqlite3_open_v2(FrozenAddress(path_).c_str(), &connection_,
                                              SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | kFlags, nullptr)
                            : sqlite3_open_v2(path_.c_str(), &connection_, SQLITE_OPEN_READWRITE | kFlags,
                                              files_ != nullptr ? files_->name : nullptr);
    if (code != SQLITE_OK) return Note(sqlite3_errcode(connection_));
    return Prepare(frozen);
}

bool Database::Prepare(bool frozen)
{
    int keep = 1;  // the log, at its full size
    sqlite3_file_control(connection_, "main", SQLITE_FCNTL_PERSIST_WAL, &keep);
    WaitAtMost(kWaitMs);
    if (!frozen && !Note(sqlite3_exec(connection_, kOptions, nullptr, nullptr, nullptr))) return false;
    const auto version = [this]
    {
        Query query = Ask("PRAGMA user_version");
        return query.Next() ? query.Number(0) : -1;
    };
    if (version() == kSchemaVersion) return true;
    if (Failed() || !Begin()) return false;
    // Another process may have been first.
    if (version() == 0) Note(sqlite3_exec(connection_, kSchema, nullptr, nullptr, nullptr));
    if (!Commit() || version() == kSchemaVersion) return !Failed();
    return Fail(EPROTO, "another version of kobd has made it", false);
}

void Database::Close()
{
    for (const auto& [sql, statement] : prepared_) sqlite3_finalize(statement);
    prepared_.clear();
    sqlite3_close(connection_);
    connection_ = nullptr;
    wait_ms_ = 0;
    writing_ = false;
}

bool Database::MoveAside(const char* is)
{
    Close();
    const std::string aside = KeepAside(path_);
    REPORT(kFunction, "%s is %s, kept as %s", path_.c_str(), is, aside.empty() ? "it is" : aside.c_str());
    if (aside.empty()) return false;
    // The log belongs to the file that was moved and would be taken for the new one's.
    rename((path_ + "-wal").c_str(), (aside + "-wal").c_str());
    unlink((path_ + "-shm").c_str());
    return true;
}

bool Database::KeepDamagedAside() { return IsDamaged() && MoveAside("damaged"); }

// Zeros behind the end mean nothing to SQLite. The lock keeps others from writing there meanwhile.
void Database::ReserveLog()
{
    static constexpr char kZeros[4096] = {};
    const std::string log = path_ + "-wal";
    if (SizeOf(log) >= kLogBytes || !Begin()) return;
    const EndOfTransaction end{this};
    const int file = open(log.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return;
    const off_t before = SizeOf(log);
    off_t size = before;
    // What was emptied has to be empty on the disk first: old pages in front of zeros would count as the newest ones.
    if (before == 0 && fsync(file) != 0) size = kLogBytes;
    for (ssize_t written; size < kLogBytes && (written = pwrite(file, kZeros, sizeof kZeros, size)) > 0;)
        size += written;
    if (size < kLogBytes && ftruncate(file, before) != 0)
        errno = 0;  // a disk without room: the log grows as it is used
    close(file);
}

void Database::WriteBack()
{
    if (connection_ == nullptr || writing_ || sqlite3_db_readonly(connection_, "main") == 1 || IsAnother()) return;
    WaitAtMost(kWaitAgainMs);
    bool busy = true;
    if (Query query = Ask("PRAGMA wal_checkpoint(TRUNCATE)"); query.Next()) busy = query.Number(0) != 0;
    if (!busy) ReserveLog();
}

// The log of a file that is gone, which SQLite would remove. It begins with zeros where nothing is in it.
void Database::KeepLogAside()
{
    std::string begin;
    const std::string log = path_ + "-wal";
    if (SizeOf(log) <= 0 || !ReadText(log, &begin) || begin.empty() || begin[0] == 0) return;
    if (SizeOf(path_) >= 0) return;  // another process has made it meanwhile: the log is its own
    const std::string aside = KeepAside(log);
    REPORT(kFunction, "%s is gone, its log is kept as %s", path_.c_str(), aside.empty() ? "it is" : aside.c_str());
}

namespace
{
std::recursive_mutex& Mutex()
{
    static std::recursive_mutex mutex;
    return mutex;
}

Database& TheDatabase()
{
    static Database& database = *new Database;  // never closed: a signal may end the process in the middle of a commit
    return database;
}
}  // namespace

void EndState()
try
{
    constexpr int kLooks = kWaitAgainMs / kLookMs;
    for (int look = 0; look < kLooks; ++look)
    {
        if (Mutex().try_lock()) return TheDatabase().WriteBack();
        usleep(kLookMs * 1000);
    }
}
catch (const std::bad_alloc&)
{
    OutOfMemory("EndState", 0);
}

State::State() : lock_(Mutex()) {}
Database* State::operator->() const { return &TheDatabase(); }
Database& State::operator*() const { return TheDatabase(); }
}  // namespace kobd::host
