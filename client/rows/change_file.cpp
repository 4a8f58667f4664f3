// Writing change files and removing them on every path.
#include "client/rows/change_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "client/library/kobd_client.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

char path_to_remove[] = "/tmp/kobctl-XXXXXX";  // of the one file that exists, for the signal handler

void RemoveAndEnd(int number)
{
    unlink(path_to_remove);
    signal(number, SIG_DFL);
    raise(number);
}

// A signal that the caller of the program ignores stays ignored.
void OnEndingSignals(void (*handler)(int))
{
    for (const int number : kEndingSignals)
        if (signal(number, handler) == SIG_IGN) signal(number, SIG_IGN);
}

// Root's file is given to the daemon's user, who could not read it otherwise.
bool DaemonMayRead(int file)
{
    kobd_module daemon{};
    if (geteuid() != 0 || kobd_module_look(KOBD_MODULE_DAEMON, &daemon) != 0) return true;
    return daemon.owner == 0 || fchown(file, daemon.owner, static_cast<gid_t>(-1)) == 0;
}

// Holds signals back: one between the creation of the file and the watch for signals would leave the file behind.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int number : kEndingSignals) sigaddset(&ending, number);
        sigprocmask(SIG_BLOCK, &ending, &before_);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_;
};
}  // namespace

ChangeFile::~ChangeFile()
{
    if (path_.empty()) return;
    const SignalsHeld held;
    unlink(path_.c_str());
    OnEndingSignals(SIG_DFL);
}

Failure ChangeFile::Write(const Items& items)
{
    const auto bytes = ItemBytes(items);
    if (!bytes) return {kSystemError, "a value is too long for a change file"};
    int descriptor = -1;
    {
        const SignalsHeld held;
        strcpy(path_to_remove, "/tmp/kobctl-XXXXXX");
        descriptor = mkostemp(path_to_remove, O_CLOEXEC);
        if (descriptor < 0) return SystemFailure("cannot create a change file in /tmp");
        path_ = path_to_remove;
        OnEndingSignals(RemoveAndEnd);
    }
    FILE* file = fdopen(descriptor, "w");
    bool whole = file != nullptr && fwrite(bytes->data(), 1, bytes->size(), file) == bytes->size() && fflush(file) == 0;
    whole = whole && DaemonMayRead(descriptor);
    if (file != nullptr && fclose(file) != 0) whole = false;
    return whole ? Failure() : SystemFailure("cannot write the change file " + path_);
}
}  // namespace kobd::client
