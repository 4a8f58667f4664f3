// Change files, and the note of them for signal handlers.
#include "client/library/change_file.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace kobd::client
{
// A path that a signal handler may remove at any time.
struct ChangeFilePlace
{
    std::atomic<bool> taken = false;
    std::atomic<bool> made = false;  // the file exists, and the path is whole
    char path[sizeof "/tmp/kobd-change-XXXXXX"] = "";
};

namespace
{
ChangeFilePlace places[16];  // calls in progress; a further one is not removed by a handler

// Holds the ending signals back from this thread: one between the creation of the file and the note of it would leave
// the file behind.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&ending, number);
        pthread_sigmask(SIG_BLOCK, &ending, &before_);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_;
};

// Root's file is given to the daemon's user, who could not read it otherwise.
bool DaemonMayRead(int file)
{
    BusModule daemon;
    if (geteuid() != 0 || BusModuleLook(kModuleKobd, &daemon) != 0) return true;
    return daemon.owner == 0 || fchown(file, daemon.owner, static_cast<gid_t>(-1)) == 0;
}

bool WriteAll(int file, const char* bytes, size_t count)
{
    while (count != 0)
    {
        const ssize_t written = write(file, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<size_t>(written);
    }
    return true;
}
}  // namespace

ChangeFile::ChangeFile()
{
    for (ChangeFilePlace& place : places)
    {
        if (place.taken.exchange(true)) continue;
        place_ = &place;
        return;
    }
}

ChangeFile::~ChangeFile()
{
    const SignalsHeld held;
    if (made_) unlink(path_);
    if (place_ == nullptr) return;
    place_->made = false;
    place_->taken = false;
}

bool ChangeFile::Write(const kobd_items& items)
{
    const int file = Create();
    if (file < 0) return false;
    const bool whole = WriteAll(file, items.bytes, items.used) && DaemonMayRead(file);
    const int error = errno;
    const bool closed = close(file) == 0;
    if (!whole) errno = error;
    return whole && closed;
}

int ChangeFile::Create()
{
    const SignalsHeld held;
    const int file = mkostemp(path_, O_CLOEXEC);
    made_ = file >= 0;
    if (made_ && place_ != nullptr)
    {
        memcpy(place_->path, path_, sizeof path_);
        place_->made = true;
    }
    return file;
}
}  // namespace kobd::client

void kobd_remove_change_files(void)
{
    for (const auto& place : kobd::client::places)
        if (place.made) unlink(place.path);
}
