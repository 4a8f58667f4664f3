// Preloaded into the daemon by scripts/power-cut: records what it does to the files of its state folder, and when it
// answers, in the order of the calls. KOBD_RECORD is the file of the record, KOBD_RECORDED the folder.
//
// A record: the letter of the call, then, each as 8 bytes of the machine's order, its number and the lengths of two
// texts that follow: the path, and what was written or the new name.
//   C create   W write (number: place)   T truncate (number: size)   S sync   R rename   U unlink   A answer
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace
{
template <typename Function>
Function Real(Function, const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}
#define REAL(function) Real(&(function), #function)

void Record(char call, int64_t number, std::string_view path, std::string_view data = {})
{
    static const int file = REAL(open)(getenv("KOBD_RECORD"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int64_t numbers[] = {number, static_cast<int64_t>(path.size()), static_cast<int64_t>(data.size())};
    std::string bytes(1, call);
    bytes.append(reinterpret_cast<const char*>(numbers), sizeof numbers).append(path).append(data);
    if (REAL(write)(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) abort();
}

// Shared memory is empty after a power cut.
bool IsRecorded(std::string_view path)
{
    const char* folder = getenv("KOBD_RECORDED");
    return folder != nullptr && path.starts_with(folder) && !path.ends_with("-shm");
}

void RecordFile(char call, int file, int64_t number, std::string_view data = {})
{
    char path[256];
    char link[32];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, path, sizeof path);
    if (length > 0 && IsRecorded({path, static_cast<size_t>(length)}))
        Record(call, number, {path, static_cast<size_t>(length)}, data);
}

template <typename Open>
int RecordOpen(Open real, const char* path, int flags, mode_t mode)
{
    const bool made = (flags & O_CREAT) != 0 && IsRecorded(path) && access(path, F_OK) != 0;
    const int file = real(path, flags, mode);
    if (file >= 0 && made) Record('C', 0, path);
    if (file >= 0 && (flags & O_TRUNC) != 0 && IsRecorded(path)) Record('T', 0, path);
    return file;
}

std::string_view Written(const void* bytes, ssize_t count)
{
    return {static_cast<const char*>(bytes), count > 0 ? static_cast<size_t>(count) : 0};
}
}  // namespace

extern "C"
{
    int open(const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return RecordOpen(REAL(open), path, flags, mode);
    }

    int open64(const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return RecordOpen(REAL(open64), path, flags, mode);
    }

    ssize_t write(int file, const void* bytes, size_t size)
    {
        const bool appends = (fcntl(file, F_GETFL) & O_APPEND) != 0;
        const off_t place = lseek(file, 0, appends ? SEEK_END : SEEK_CUR);
        const ssize_t count = REAL(write)(file, bytes, size);
        RecordFile('W', file, place, Written(bytes, count));
        return count;
    }

    ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t place)
    {
        const ssize_t count = REAL(pwrite64)(file, bytes, size, place);
        RecordFile('W', file, place, Written(bytes, count));
        return count;
    }

    ssize_t pwrite(int file, const void* bytes, size_t size, off_t place) { return pwrite64(file, bytes, size, place); }

    int ftruncate64(int file, off64_t size) noexcept
    {
        RecordFile('T', file, size);
        return REAL(ftruncate64)(file, size);
    }

    int ftruncate(int file, off_t size) noexcept { return ftruncate64(file, size); }

    int fsync(int file)
    {
        const int result = REAL(fsync)(file);
        RecordFile('S', file, 0);
        return result;
    }

    int fdatasync(int file)
    {
        const int result = REAL(fdatasync)(file);
        RecordFile('S', file, 0);
        return result;
    }

    int rename(const char* from, const char* to) noexcept
    {
        if (IsRecorded(from)) Record('R', 0, from, to);
        return REAL(rename)(from, to);
    }

    int unlink(const char* path) noexcept
    {
        if (IsRecorded(path)) Record('U', 0, path);
        return REAL(unlink)(path);
    }

    // Recorded before it is sent: what a client may know of must be there.
    int msgsnd(int queue, const void* message, size_t size, int flags)
    {
        if (getenv("KOBD_RECORDED") != nullptr) Record('A', queue, "");
        return REAL(msgsnd)(queue, message, size, flags);
    }
}
