// The semaphores that say who has a module.
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "host/bus/bus_queues.h"

namespace kobd::host
{
namespace
{
union SemaphoreArgument  // for semctl, which leaves its declaration to the caller
{
    int value;
    semid_ds* state;
};

bool WasRemoved() { return errno == EIDRM || errno == EINVAL; }

bool Look(int claim, semid_ds* state) { return semctl(claim, 0, IPC_STAT, SemaphoreArgument{.state = state}) == 0; }

// A number that another user set, with no process of that user behind it, must not keep root out.
bool IsHeld(int claim, const ipc_perm& of)
{
    if (!ClaimHolds(claim)) return false;
    const pid_t holder = ClaimHolder(claim);
    if (holder == 0) return geteuid() != 0 || of.cuid == 0;  // a process of a namespace that is not seen from here
    if (kill(holder, 0) != 0 && errno == ESRCH) return false;
    struct stat process = {};
    if (geteuid() != 0 || IsOurs(of)) return true;
    const bool known = stat(("/proc/" + std::to_string(holder)).c_str(), &process) == 0;
    return !known || process.st_uid == of.uid || process.st_uid == of.cuid;  // else the number is another process's now
}

// The module's semaphore, made anew where nobody holds one that is not this user's alone: root may use everybody's, so
// that another user who came first could give the module back and take it.
int OwnSemaphore(uint32_t module)
{
    for (;;)
    {
        const int claim = semget(static_cast<key_t>(module), 1, IPC_CREAT | kQueueMode);
        if (claim < 0) return -1;
        semid_ds state = {};
        if (!Look(claim, &state))
        {
            if (WasRemoved()) continue;
            return -1;
        }
        if (IsHeld(claim, state.sem_perm))
        {
            errno = EBUSY;
            return -1;
        }
        if (IsOurs(state.sem_perm) && !ClaimHolds(claim)) return claim;
        if (semctl(claim, 0, IPC_RMID) != 0 && !WasRemoved()) return -1;
    }
}
}  // namespace

int ClaimModule(uint32_t module)
{
    if (!IsModule(module)) return -1;
    for (;;)
    {
        const int claim = OwnSemaphore(module);
        if (claim < 0) return -1;
        sembuf take[2] = {{0, 0, IPC_NOWAIT}, {0, 1, IPC_NOWAIT | SEM_UNDO}};
        if (semop(claim, take, 2) == 0) return claim;
        if (errno == EINTR || WasRemoved()) continue;  // the one who left removes the set
        if (errno == EAGAIN) errno = EBUSY;
        return -1;
    }
}

void ReleaseModule(int claim)
{
    if (claim >= 0) semctl(claim, 0, IPC_RMID);
}

int ModuleClaim(uint32_t module) { return IsModule(module) ? semget(static_cast<key_t>(module), 1, kQueueMode) : -1; }

bool ClaimHolds(int claim) { return claim >= 0 && semctl(claim, 0, GETVAL) > 0; }

pid_t ClaimHolder(int claim)
{
    const int process = claim >= 0 ? semctl(claim, 0, GETPID) : 0;
    return process > 0 ? process : 0;
}

void GiveClaim(int claim, uid_t owner)
{
    semid_ds state = {};
    if (!Look(claim, &state) || state.sem_perm.uid == owner) return;
    state.sem_perm.uid = owner;
    semctl(claim, 0, IPC_SET, SemaphoreArgument{.state = &state});
}
}  // namespace kobd::host
