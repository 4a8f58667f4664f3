// Preloaded into the daemon by tests: system calls on chosen files that fail, or move one byte.
#include "tests/system/preload_faults.h"

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
#include <cstring>

#ifndef __THROW  // what glibc says in C++ of functions that throw nothing, and musl does not
#define __THROW
#endif

using kobd::test::Call;
using kobd::test::Fault;

namespace
{
constexpr int kNoFault = -1;

template <typename Function>
Function Real(Function, const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}
#define REAL(function) Real(&(function), #function)

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
int Strike(Call call, const char* path)
{
    Fault* fault = SharedFault();
    if (fault == nullptr || fault->call != call || fnmatch(fault->path, path, 0) != 0) return kNoFault;
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

int StrikeFile(Call call, int file)
{
    if (const Fault* fault = SharedFault(); fault == nullptr || fault->call != call) return kNoFault;
    char link[32];
    char path[256] = {};
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    return readlink(link, path, sizeof path - 1) < 0 ? kNoFault : Strike(call, path);
}

// Sets errno when the call must fail.
bool Fails(int fault)
{
    if (fault > kobd::test::kShort) errno = fault;
    return fault > kobd::test::kShort;
}

size_t Part(int fault, size_t size) { return fault == kobd::test::kShort && size > 1 ? 1 : size; }

// The C library's streams write by themselves, past our write. A stream of our own does not: it
// goes on after a short write and gives up at an error, as they do.
ssize_t StreamWrite(void* cookie, const char* bytes, size_t size)
{
    const int file = static_cast<int>(reinterpret_cast<intptr_t>(cookie));
    size_t done = 0;
    while (done < size)
    {
        const ssize_t written = write(file, bytes + done, size - done);
        if (written <= 0) break;
        done += static_cast<size_t>(written);
    }
#ifndef __GLIBC__  // where an error is no short write
    if (done < size) return -1;
#endif
    return static_cast<ssize_t>(done);
}

int StreamClose(void* cookie) { return close(static_cast<int>(reinterpret_cast<intptr_t>(cookie))); }
}  // namespace

extern "C"
{
    int open(const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return Fails(Strike(Call::kOpen, path)) ? -1 : REAL(open)(path, flags, mode);
    }

    ssize_t read(int file, void* bytes, size_t size)
    {
        const int fault = StrikeFile(Call::kRead, file);
        return Fails(fault) ? -1 : REAL(read)(file, bytes, Part(fault, size));
    }

    ssize_t write(int file, const void* bytes, size_t size)
    {
        const int fault = StrikeFile(Call::kWrite, file);
        return Fails(fault) ? -1 : REAL(write)(file, bytes, Part(fault, size));
    }

#ifdef __GLIBC__
    int open64(const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return Fails(Strike(Call::kOpen, path)) ? -1 : REAL(open64)(path, flags, mode);
    }

    ssize_t pread64(int file, void* bytes, size_t size, off64_t offset)
    {
        const int fault = StrikeFile(Call::kRead, file);
        return Fails(fault) ? -1 : REAL(pread64)(file, bytes, Part(fault, size), offset);
    }

    ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset)
    {
        const int fault = StrikeFile(Call::kWrite, file);
        return Fails(fault) ? -1 : REAL(pwrite64)(file, bytes, Part(fault, size), offset);
    }
#else
    ssize_t pread(int file, void* bytes, size_t size, off_t offset)
    {
        const int fault = StrikeFile(Call::kRead, file);
        return Fails(fault) ? -1 : REAL(pread)(file, bytes, Part(fault, size), offset);
    }

    ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset)
    {
        const int fault = StrikeFile(Call::kWrite, file);
        return Fails(fault) ? -1 : REAL(pwrite)(file, bytes, Part(fault, size), offset);
    }
#endif

    int fdatasync(int file) { return Fails(StrikeFile(Call::kFsync, file)) ? -1 : REAL(fdatasync)(file); }

    int fsync(int file) { return Fails(StrikeFile(Call::kFsync, file)) ? -1 : REAL(fsync)(file); }

    int rename(const char* from, const char* to) __THROW
    {
        return Fails(Strike(Call::kRename, from)) ? -1 : REAL(rename)(from, to);
    }

    pid_t fork() __THROW { return Fails(Strike(Call::kFork, "")) ? -1 : REAL(fork)(); }

    int msgctl(int queue, int command, msqid_ds* status) __THROW
    {
        const bool fails = command == IPC_SET && Fails(Strike(Call::kSetQueue, ""));
        return fails ? -1 : REAL(msgctl)(queue, command, status);
    }

    FILE* fdopen(int file, const char* mode) __THROW
    {
        if (*mode != 'w') return REAL(fdopen)(file, mode);
        return fopencookie(reinterpret_cast<void*>(static_cast<intptr_t>(file)), mode,
                           {nullptr, StreamWrite, nullptr, StreamClose});
    }
}
