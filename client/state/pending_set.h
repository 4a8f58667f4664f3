// Sets that go back by themselves: the old values wait in the state folder until kobctl confirm
// removes them or their time is up. A detached kobctl watches the time; where it was killed, the
// service start or the next kobctl call goes on. A machine that was started anew in between counts as
// time that is up: who has locked himself out pulls the plug.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/arguments/assignment.h"

namespace kobd::client
{
// One process at a time looks at the pending set, as long as such an object exists. Print nothing meanwhile: a
// terminal that is stopped would keep every other kobctl out.
class PendingSet
{
public:
    PendingSet();  // waits for the lock, at most two seconds
    PendingSet(const PendingSet&) = delete;
    PendingSet& operator=(const PendingSet&) = delete;
    ~PendingSet();

    // Keeps the present values of what is about to be set, on the disk, and starts the process that
    // waits. What stands against it, with its result code, or the empty text: nothing is pending then and
    // nothing may be set.
    std::string Begin(const Options& options, const std::vector<Assignment>& pairs, int* code);

    // What keeps this process from looking, or the empty text.
    const std::string& Error() const { return error_; }

    bool IsPending() const { return pending_; }
    bool IsOverdue() const;
    std::string Names() const;  // "webHttpPort, webHttpEnable"

    // Whether the values are still, or again, the old ones. False too when they cannot be read.
    bool IsUnchanged(const Options& options) const;

    // Forgets the old values: the new ones stay. False with errno when the file could not be changed.
    bool Withdraw();

    // Sets the old values and forgets them. What went wrong, or the empty text; they are kept as long
    // as the daemon does not answer, and set aside when it refuses them.
    std::string TakeBack(const Options& options);

private:
    void Load();
    std::string Text() const;  // of the file

    int lock_ = -1;
    std::string error_;
    bool pending_ = false;
    int64_t due_s_ = 0;  // on the clock that runs since the machine started
    std::string boot_;   // which start of the machine that was
    std::vector<Assignment> old_values_;
};

// Whether there may be a pending set; only looks, and makes no state folder.
bool MayBePending();

// Starts the process that waits and returns once it has closed all that it inherited. False with errno.
bool StartWaiting();

// Where a set is overdue, sets the old values before `command` runs. A line that says so, or why it was not
// done, or the empty text; kobctl confirm says it itself.
std::string RestoreOverdue(const std::string& command);

// Where values lie that the daemon refused to take back.
std::string RefusedFile();
}  // namespace kobd::client
