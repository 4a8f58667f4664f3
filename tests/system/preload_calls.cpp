// Preloaded into the daemon: system calls on chosen files that fail or move one byte, for tests (preload_faults.h), and
// a record of what the daemon does to the files of its state folder, and when it answers, for scripts/power-cut.
//
// KOBD_RECORD is the file of the record, KOBD_RECORDED the folder; without them nothing is recorded. A record: the
// letter of the call, then, each as 8 bytes of the machine's order, its number and the lengths of two texts that
// follow: the path, and what was written or the new name.
//   C create   W write (number: place)   T truncate (number: size)   S sync   R rename   U unlink   A answer
#include <dlfcn.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tests/system/preload_faults.h"
#include "tests/system/real_call.h"

using kobd::test::Call;
using kobd::test::Fault;

namespace
{
constexpr int kNoFault = -1;

// Null in a program that was started before there was a fault file, such as the test's own shell.
Fault* SharedFault()
{
    static Fault* const fault = []
    {
        const int file = REAL(open)(kobd::test::kFaultFile, O_RDWR | O_CLOEXEC);
        if (file < 0) return static_cast<Fault*>(nullptr);
        void* place = mmap(nullptr, sizeof(Fault), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        close(file);
        return place == MAP_FAILED ? nullptr : static_cast<Fault*>(place);
    }();
    return fault;
}

// kNoFault, kShort or an errno.
int Strike(Call call, const std::string& path)
{
    Fault* fault = SharedFault();
    if (fault == nullptr || fault->call != call || fnmatch(fault->path, path.c_str(), 0) != 0) return kNoFault;
    if (fault->skip > 0)
    {
        --fault->skip;
        return kNoFault;
    }
    if (fault->times == 0) return kNoFault;
    --fault->times;
    ++fault->struck;
    return fault->error;
}

// Sets errno when the call must fail.
bool Fails(int fault)
{
    if (fault > kobd::test::kShort) errno = fault;
    return fault > kobd::test::kShort;
}

size_t Part(int fault, size_t size) { return fault == kobd::test::kShort && size > 1 ? 1 : size; }

// Empty when neither a fault of that call nor the record needs it: a signal handler may be writing.
std::string PathOf(Call call, int file)
{
    const Fault* fault = SharedFault();
    if ((fault == nullptr || fault->call != call) && getenv("KOBD_RECORDED") == nullptr) return {};
    char path[256];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t length = readlink(link.c_str(), path, sizeof path);
    return {path, length > 0 ? static_cast<size_t>(length) : 0};
}

// Shared memory is empty after a power cut.
bool IsRecorded(std::string_view path)
{
    const char* folder = getenv("KOBD_RECORDED");
    return folder != nullptr && path.starts_with(folder) && !path.ends_with("-shm");
}

void Record(char call, int64_t number, std::string_view path, std::string_view data = {})
{
    static const int file = REAL(open)(getenv("KOBD_RECORD"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int64_t numbers[] = {number, static_cast<int64_t>(path.size()), static_cast<int64_t>(data.size())};
    std::string bytes(1, call);
    bytes.append(reinterpret_cast<const char*>(numbers), sizeof numbers).append(path).append(data);
    if (REAL(write)(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) abort();
}

void RecordFile(char call, int64_t number, std::string_view path, std::string_view data = {})
{
    if (IsRecorded(path)) Record(call, number, path, data);
}

template <typename Real>
int Open(Real real, const char* path, int flags, mode_t mode)
{
    if (Fails(Strike(Call::kOpen, path))) return -1;
    const bool made = (flags & O_CREAT) != 0 && IsRecorded(path) && access(path, F_OK) != 0;
    const int file = real(path, flags, mode);
    if (file >= 0 && made) RecordFile('C', 0, path);
    if (file >= 0 && (flags & O_TRUNC) != 0) RecordFile('T', 0, path);
    return file;
}

// Calls read or pread with as many bytes as may be read.
template <typename Real>
ssize_t Read(int file, size_t size, Real real)
{
    const int fault = Strike(Call::kRead, PathOf(Call::kRead, file));
    return Fails(fault) ? -1 : real(Part(fault, size));
}

template <typename Real>
ssize_t Write(int file, const void* bytes, size_t size, int64_t place, Real real)
{
    const std::string path = PathOf(Call::kWrite, file);
    const int fault = Strike(Call::kWrite, path);
    const ssize_t count = Fails(fault) ? -1 : real(Part(fault, size));
    if (count > 0) RecordFile('W', place, path, {static_cast<const char*>(bytes), static_cast<size_t>(count)});
    return count;
}

template <typename Real>
int Sync(int file, Real real)
{
    const std::string path = PathOf(Call::kFsync, file);
    const int result = Fails(Strike(Call::kFsync, path)) ? -1 : real(file);
    RecordFile('S', 0, path);
    return result;
}

// The C library's streams write by themselves, past our write. A stream of our own does not.
int FileOf(void* cookie) { return static_cast<int>(reinterpret_cast<intptr_t>(cookie)); }
ssize_t StreamWrite(void* cookie, const char* bytes, size_t size) { return write(FileOf(cookie), bytes, size); }
int StreamClose(void* cookie) { return close(FileOf(cookie)); }
}  // namespace

#ifdef __GLIBC__  // which has names of their own for places of 64 bits
#define WITH_64(function) function##64
#else
#define WITH_64(function) function
#endif

#define DEFINE_OPEN(function)                                                       \
    int function(const char* path, int flags, ...)                                  \
    {                                                                               \
        va_list arguments;                                                          \
        va_start(arguments, flags);                                                 \
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0; \
        va_end(arguments);                                                          \
        return Open(REAL(function), path, flags, mode);                             \
    }

extern "C"
{
    DEFINE_OPEN(open)
#ifdef __GLIBC__
    DEFINE_OPEN(open64)
#endif

    ssize_t read(int file, void* bytes, size_t size)
    {
        return Read(file, size, [=](size_t part) { return REAL(read)(file, bytes, part); });
    }

    ssize_t WITH_64(pread)(int file, void* bytes, size_t size, int64_t place)
    {
        return Read(file, size, [=](size_t part) { return REAL(WITH_64(pread))(file, bytes, part, place); });
    }

    ssize_t write(int file, const void* bytes, size_t size)
    {
        const bool appends = (fcntl(file, F_GETFL) & O_APPEND) != 0;
        const int64_t place = lseek(file, 0, appends ? SEEK_END : SEEK_CUR);
        return Write(file, bytes, size, place, [=](size_t part) { return REAL(write)(file, bytes, part); });
    }

    ssize_t WITH_64(pwrite)(int file, const void* bytes, size_t size, int64_t place)
    {
        return Write(file, bytes, size, place,
                     [=](size_t part) { return REAL(WITH_64(pwrite))(file, bytes, part, place); });
    }

#ifdef __GLIBC__
    // What is not compiled with the names of 64 bits calls this one.
    ssize_t pwrite(int file, const void* bytes, size_t size, int64_t place)
    {
        return Write(file, bytes, size, place, [=](size_t part) { return REAL(pwrite)(file, bytes, part, place); });
    }
#endif

    int fsync(int file) { return Sync(file, REAL(fsync)); }

    int fdatasync(int file) { return Sync(file, REAL(fdatasync)); }

    int WITH_64(ftruncate)(int file, int64_t size) __THROW
    {
        RecordFile('T', size, PathOf(Call::kNone, file));
        return REAL(WITH_64(ftruncate))(file, size);
    }

    int rename(const char* from, const char* to) __THROW
    {
        RecordFile('R', 0, from, to);
        return REAL(rename)(from, to);
    }

    int unlink(const char* path) __THROW
    {
        RecordFile('U', 0, path);
        return REAL(unlink)(path);
    }

    // Recorded before it is sent: what a client may know of must be there.
    int msgsnd(int queue, const void* message, size_t size, int flags)
    {
        if (getenv("KOBD_RECORDED") != nullptr) Record('A', queue, "");
        return REAL(msgsnd)(queue, message, size, flags);
    }

    int msgctl(int queue, int command, msqid_ds* status) __THROW
    {
        const bool fails = command == IPC_SET && Fails(Strike(Call::kSetQueue, ""));
        return fails ? -1 : REAL(msgctl)(queue, command, status);
    }

    pid_t fork() __THROW { return Fails(Strike(Call::kFork, "")) ? -1 : REAL(fork)(); }

    FILE* fdopen(int file, const char* mode) __THROW
    {
        if (*mode != 'w') return REAL(fdopen)(file, mode);
        return fopencookie(reinterpret_cast<void*>(static_cast<intptr_t>(file)), mode,
                           {nullptr, StreamWrite, nullptr, StreamClose});
    }
}
