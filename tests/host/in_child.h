// Runs a part of a test in a child process. It is for what a process cannot undo: to become another user, to set a
// limit, or to end without clearing up.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace kobd::test
{
inline constexpr uid_t kNobody = 65534;
inline constexpr int kNotThatUser = 99;  // nobody but root becomes another user

// Runs the work in a child of this user, which ends as one that was killed: nothing is given back. Its result.
inline int InChild(uid_t user, const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0)
    {
        alarm(10);  // a wait without an end must not outlive the test
        _exit(user == geteuid() || setresuid(user, user, user) == 0 ? work() : kNotThatUser);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
}  // namespace kobd::test
