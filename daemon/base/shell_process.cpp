// Starting, looking after and ending a shell.
#include "daemon/base/shell_process.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>

extern char** environ;

namespace kobd
{
namespace
{
// What the shell begins with, whatever the daemon's thread blocks or ignores.
class Beginning
{
public:
    explicit Beginning(int output)
    {
        error_ = posix_spawn_file_actions_init(&files_);
        if (error_ != 0) return;
        error_ = posix_spawnattr_init(&attributes_);
        if (error_ != 0)
        {
            posix_spawn_file_actions_destroy(&files_);
            return;
        }
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&attributes_, &set);
        for (const int ignored : {SIGPIPE, SIGHUP, SIGCHLD, SIGXFSZ}) sigaddset(&set, ignored);
        posix_spawnattr_setsigdefault(&attributes_, &set);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
        if (output >= 0) posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO);
    }
    ~Beginning()
    {
        if (error_ != 0) return;
        posix_spawn_file_actions_destroy(&files_);
        posix_spawnattr_destroy(&attributes_);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    // 0, or an errno.
    int Spawn(pid_t* process, const char* shell, char* const* arguments)
    {
        return error_ != 0 ? error_ : posix_spawn(process, shell, &files_, &attributes_, arguments, environ);
    }

private:
    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
    int error_;
};
}  // namespace

pid_t StartShell(const char* command, int output)
{
    char shell[] = "/bin/sh";
    char option[] = "-c";
    char* const arguments[] = {shell, option, const_cast<char*>(command), nullptr};
    pid_t process = -1;
    errno = Beginning(output).Spawn(&process, shell, arguments);
    return errno == 0 ? process : -1;
}

bool ShellEnded(pid_t process, int* status)
{
    int ended_as = 0;
    const pid_t ended = waitpid(process, &ended_as, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
    *status = ended < 0 ? 0 : WIFEXITED(ended_as) ? WEXITSTATUS(ended_as) : -1;
    return true;
}

void EndShell(pid_t process)
{
    kill(-process, SIGKILL);
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR)
    {
    }
}
}  // namespace kobd
