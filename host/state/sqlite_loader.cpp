// SQLite for kobctl, in the place of the library itself: loads it when a command first needs the database. A router
// whose platform is not the imitated one has no such library, and every other command works there.
#include <dlfcn.h>
#include <sqlite3.h>

#include <cstdarg>

namespace
{
constexpr const char* kLibrary = "libsqlite3.so.0";
constexpr const char* kMissing = "the library libsqlite3.so.0 is not installed";

void* Find(const char* name)
{
    static void* const library = dlopen(kLibrary, RTLD_NOW);
    return library != nullptr ? dlsym(library, name) : nullptr;
}
}  // namespace

// Defines a function of SQLite that calls the loaded one, or gives `missing` where there is no library.
#define LOADED(result, name, parameters, arguments, missing)                     \
    result name parameters                                                       \
    {                                                                            \
        static const auto call = reinterpret_cast<decltype(&name)>(Find(#name)); \
        return call != nullptr ? call arguments : (missing);                     \
    }

extern "C"
{
    int sqlite3_open_v2(const char* path, sqlite3** connection, int flags, const char* vfs)
    {
        static const auto call = reinterpret_cast<decltype(&sqlite3_open_v2)>(Find("sqlite3_open_v2"));
        if (call != nullptr) return call(path, connection, flags, vfs);
        *connection = nullptr;
        return SQLITE_ERROR;
    }
    // With the arguments of all options that kobctl sets.
    int sqlite3_db_config(sqlite3* connection, int option, ...)
    {
        static const auto call = reinterpret_cast<decltype(&sqlite3_db_config)>(Find("sqlite3_db_config"));
        va_list arguments;
        va_start(arguments, option);
        const int value = va_arg(arguments, int);
        int* const then = va_arg(arguments, int*);
        va_end(arguments);
        return call != nullptr ? call(connection, option, value, then) : SQLITE_ERROR;
    }
    // The text of every failure where there is no library; no connection was made then.
    LOADED(const char*, sqlite3_errstr, (int code), (code), kMissing)
    LOADED(const char*, sqlite3_errmsg, (sqlite3 * connection), (connection), kMissing)
    LOADED(int, sqlite3_errcode, (sqlite3 * connection), (connection), SQLITE_ERROR)
    LOADED(int, sqlite3_close, (sqlite3 * connection), (connection), SQLITE_OK)
    LOADED(int, sqlite3_busy_timeout, (sqlite3 * connection, int ms), (connection, ms), SQLITE_ERROR)
    LOADED(int, sqlite3_db_readonly, (sqlite3 * connection, const char* name), (connection, name), -1)
    LOADED(int, sqlite3_file_control, (sqlite3 * connection, const char* name, int what, void* value),
           (connection, name, what, value), SQLITE_ERROR)
    LOADED(int, sqlite3_exec,
           (sqlite3 * connection, const char* sql, int (*each)(void*, int, char**, char**), void* context, char** why),
           (connection, sql, each, context, why), SQLITE_ERROR)
    LOADED(int, sqlite3_prepare_v3,
           (sqlite3 * connection, const char* sql, int bytes, unsigned flags, sqlite3_stmt** statement,
            const char** rest),
           (connection, sql, bytes, flags, statement, rest), SQLITE_ERROR)
    LOADED(int, sqlite3_bind_int64, (sqlite3_stmt * statement, int place, sqlite3_int64 number),
           (statement, place, number), SQLITE_ERROR)
    LOADED(int, sqlite3_bind_text,
           (sqlite3_stmt * statement, int place, const char* text, int bytes, void (*release)(void*)),
           (statement, place, text, bytes, release), SQLITE_ERROR)
    LOADED(sqlite3_int64, sqlite3_last_insert_rowid, (sqlite3 * connection), (connection), 0)
    LOADED(int, sqlite3_step, (sqlite3_stmt * statement), (statement), SQLITE_ERROR)
    LOADED(int, sqlite3_reset, (sqlite3_stmt * statement), (statement), SQLITE_ERROR)
    LOADED(int, sqlite3_clear_bindings, (sqlite3_stmt * statement), (statement), SQLITE_ERROR)
    LOADED(int, sqlite3_finalize, (sqlite3_stmt * statement), (statement), SQLITE_OK)
    LOADED(int, sqlite3_column_type, (sqlite3_stmt * statement, int column), (statement, column), SQLITE_NULL)
    LOADED(int, sqlite3_column_bytes, (sqlite3_stmt * statement, int column), (statement, column), 0)
    LOADED(const void*, sqlite3_column_blob, (sqlite3_stmt * statement, int column), (statement, column), nullptr)
    LOADED(sqlite3_int64, sqlite3_column_int64, (sqlite3_stmt * statement, int column), (statement, column), 0)
}
