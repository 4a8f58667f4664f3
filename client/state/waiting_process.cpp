// Starting, detaching and waiting.
#include "client/state/waiting_process.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include "client/state/pending_set.h"
#include "host/state/database.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
// Closes everything that the caller had open but `kept`, high numbers too: procd's functions hold a service's lock on
// descriptor 1000, and a waiting process that inherits it would keep the service from being stopped.
void CloseInherited(int kept)
{
    std::vector<int> files;
    if (DIR* folder = opendir("/proc/self/fd"))
    {
        while (const dirent* entry = readdir(folder)) files.push_back(atoi(entry->d_name));
        closedir(folder);
    }
    for (const int file : files)
        if (file > STDERR_FILENO && file != kept) close(file);
}

// Leaves the caller's session and files, tells the caller by a byte on `ready`, and closes that.
bool Detach(int ready)
{
    setsid();
    CloseInherited(ready);
    const int nothing = open("/dev/null", O_RDWR);
    for (int file = 0; file < 3; ++file) dup2(nothing, file);
    for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
    signal(SIGPIPE, SIG_IGN);  // the caller may be dead by now, which changes nothing
    const bool told = chdir("/") == 0 && (write(ready, "", 1) == 1 || errno == EPIPE);
    close(ready);
    return told;
}

// Looks once. False when there is nothing more to wait for.
bool LookAndRestore()
{
    PendingSet pending;
    if (pending.IsOverdue()) (void)pending.TakeBack({});  // kept and tried again while nobody answers
    return pending.IsPending() || (pending.Error() && MayBePending());
}

[[noreturn]] void WaitAndRestore(int ready)
{
    // One waiting process is enough. Another one that is about to end has two seconds to do so.
    if (!Detach(ready) || OpenLocked("/confirm.waiting") < 0) _exit(1);
    while (LookAndRestore()) sleep(1);
    _exit(0);
}

// Waits until the new process has told that it is detached. False with errno.
bool WaitUntilDetached(int ready)
{
    constexpr int kLongestMs = 2000;
    pollfd byte_there = {ready, POLLIN, 0};
    char byte = 0;
    const int arrived = poll(&byte_there, 1, kLongestMs);
    if (arrived == 0) errno = ETIMEDOUT;
    if (arrived <= 0) return false;
    errno = ECHILD;  // a pipe that ends without a byte: the process is dead
    return read(ready, &byte, 1) == 1;
}
}  // namespace

bool StartWaiting()
{
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) return false;
    host::State()->Close();  // SQLite allows no connection to cross a fork
    const pid_t process = fork();
    if (process == 0) WaitAndRestore(ready[1]);
    close(ready[1]);
    const bool detached = process > 0 && WaitUntilDetached(ready[0]);
    const int error = errno;
    close(ready[0]);
    errno = error;
    return detached;
}

int OpenLocked(const char* name)
{
    constexpr int kTries = 20;
    constexpr useconds_t kPauseUs = 100000;
    const int file = host::OpenOrCreate(host::StateFolder() + name, O_RDWR);  // it becomes the folder's owner's
    for (int i = 0; file >= 0 && i < kTries; ++i)
    {
        if (flock(file, LOCK_EX | LOCK_NB) == 0) return file;
        usleep(kPauseUs);
    }
    const int error = errno;
    if (file >= 0) close(file);
    errno = error;
    return -1;
}
}  // namespace kobd::client
