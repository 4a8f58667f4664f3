// The database of the state folder, "kobd.db": what survives a restart of the daemon, and what the router's processes
// share. It is SQLite's, so that every process may open it and anyone can look with sqlite3:
//
//   objects   the values that differ from the factory's
//   lists     the tables whose rows differ from the factory's, with the highest index given so far
//   cells     their rows: a cell for each column that is not empty or 0
//   stores    what differs from the factory's in the stores nvram and config
//   pending   what kobctl set --confirm may have to set back; meta has its time, refused what could not be set back
//   history   what each commit changed, of the last ten thousand changes at most
//
// A commit is one transaction, on the disk when Commit returns.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace kobd::host
{
class Database;

// A file system of SQLite, by its name, that is told when a commit begins and when it has ended, well or badly.
struct DatabaseFiles
{
    const char* name;
    void (*commit_begins)();
    void (*commit_ended)();
};

// A statement that runs, with its values. After its end, or an error, which the database remembers, there is no next
// row.
class Query
{
public:
    // Where the texts of its values stay valid as long as it runs, they are not copied.
    Query(Database* database, sqlite3_stmt* statement, bool texts_stay)
        : database_(database), statement_(statement), texts_stay_(texts_stay)
    {
    }
    ~Query();
    Query(Query&& other) noexcept
        : database_(other.database_),
          statement_(std::exchange(other.statement_, nullptr)),
          texts_stay_(other.texts_stay_)
    {
    }
    Query& operator=(Query&&) = delete;

    bool Next();

    // Of the present row, by the number of the column from 0 on. Texts may hold any bytes and are valid until Next.
    bool IsNull(int column) const;
    std::string_view Text(int column) const;
    int64_t Number(int column) const;

private:
    friend class Database;
    void Bind(int place, std::string_view text);
    void Bind(int place, const std::string& text) { Bind(place, std::string_view(text)); }
    void Bind(int place, const char* text) { Bind(place, std::string_view(text)); }
    void Bind(int place, std::optional<std::string_view> text);
    void Bind(int place, int64_t number);

    Database* database_;
    sqlite3_stmt* statement_;  // nullptr: the database has failed before
    bool texts_stay_;
};

class Database
{
public:
    Database() = default;
    ~Database() { Close(); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Opens the database where it is not open yet, or where another file has its name by now. One that is not there is
    // made, and a damaged one is kept aside, reported and made anew; without `create`, for those who only read, both
    // are failures, the first with the error ENOENT, as is an empty file. False after a failure.
    bool Open(bool create = true);

    // From now on the database is opened in this file system; nullptr: SQLite's own.
    void UseFiles(const DatabaseFiles* files) { files_ = files; }

    // How often it was opened: another number than before means that the file may be another one.
    int Openings() const { return openings_; }

    // To be called before a fork, too: no connection may cross one.
    void Close();

    // Runs a statement, whose text must be a literal, with these values in the places of its question marks: texts of
    // any bytes, no text (std::nullopt), numbers. Waits for other processes, two seconds at most; once it has waited in
    // vain, a quarter of a second until a transaction succeeds, since requests behind each other would add their waits
    // up. After a failure in a transaction nothing runs any more until its end.
    template <typename... Values>
    Query Ask(const char* sql, const Values&... values)
    {
        return With(false, sql, values...);
    }
    template <typename... Values>
    bool Run(const char* sql, const Values&... values)
    {
        Query query = With(true, sql, values...);
        while (query.Next()) continue;
        return !Failed();
    }

    // The number of the row that was inserted last, of a table that numbers its rows.
    int64_t LastRow() const;

    // Opens the database and runs `changes` in one transaction, which is on the disk when this returns. False when
    // anything has failed; nothing has changed then. Inside of another Write it always fails.
    template <typename Changes>
    bool Write(Changes changes)
    {
        if (!Open() || !Begin()) return false;
        const EndOfTransaction end{this};  // memory may run out
        changes();
        return Commit();
    }

    // The last failure: its error number as errno has it, EIO for what has none, and its text.
    bool Failed() const { return error_ != 0; }
    int Error() const { return error_; }
    bool IsDamaged() const { return Failed() && damaged_; }  // it says that the file is no whole database
    std::string Why() const;

    // Gives the file another name and reports that it `is` so, with the new name. Open then makes a new one. False when
    // it cannot be moved.
    bool MoveAside(const char* is);

    // The same for a file that has failed because it is no whole database; false, too, when it is not damaged.
    bool KeepDamagedAside();

    // Gives the write-ahead log its full size, so that commits do not have to make it grow.
    void ReserveLog();

    // Writes the log back, so that the file is whole without it. Nothing happens while another process reads.
    void WriteBack();

private:
    friend class Query;
    struct EndOfTransaction
    {
        Database* database;
        ~EndOfTransaction() { database->Rollback(); }
    };

    template <typename... Values>
    Query With(bool texts_stay, const char* sql, const Values&... values)
    {
        Query query(this, Prepared(sql), texts_stay);
        int place = 0;
        (query.Bind(++place, values), ...);
        return query;
    }

    bool Begin();
    bool RunCommit();
    bool Commit();
    void Rollback();  // harmless without a transaction
    sqlite3_stmt* Prepared(const char* sql);
    bool Note(int code);  // remembers a failure; false then
    bool Fail(int error, const std::string& why, bool damaged);
    bool IsAnother();
    void WaitAtMost(int milliseconds);
    off_t SizeOnceMade();
    void KeepLogAside();
    bool OpenFile(bool create);
    bool Prepare(bool frozen);

    static constexpr int kLooks = 200;  // at an empty file that another process may be making, a second in all

    sqlite3* connection_ = nullptr;
    std::map<const char*, sqlite3_stmt*> prepared_;
    std::string path_;
    int openings_ = 0;
    const DatabaseFiles* files_ = nullptr;
    int looks_ = kLooks;    // left
    int wait_ms_ = 0;       // for other processes, now
    bool writing_ = false;  // between Begin and its end
    bool damaged_ = false;
    int error_ = 0;
    std::string why_;
};

// The process's database, for one thread at a time.
class State
{
public:
    State();
    Database* operator->() const;
    Database& operator*() const;

private:
    std::unique_lock<std::recursive_mutex> lock_;
};

// For the end of the process: writes the log back. From then on no thread gets at the database: a commit would not be
// answered any more. Where another thread has it for longer than a quarter of a second, nothing happens.
void EndState();
}  // namespace kobd::host
