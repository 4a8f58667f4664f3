// Sets that are taken back unless they are confirmed. The old values wait in the state folder until kobctl confirm
// removes them or their time is up. A detached kobctl watches the time; where it was killed, the start of the service
// or the next kobctl takes over. After a restart of the machine the time counts as up, so that somebody who has locked
// himself out can pull the plug.
#pragma once

#include <cstdint>
#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
// Only one process at a time has such an object. Print nothing while you have one: a terminal that is stopped would
// keep every other kobctl out.
class PendingSet
{
public:
    PendingSet();  // waits for the others, at most two seconds
    PendingSet(const PendingSet&) = delete;
    PendingSet& operator=(const PendingSet&) = delete;
    ~PendingSet();

    // What keeps this process from looking. Nothing seems to be pending then.
    const Failure& Error() const { return error_; }

    // Keeps the present values of what is about to be set on the disk, and starts the process that waits. After a
    // failure nothing is pending and nothing may be set.
    Failure Begin(const Options& options, const Assignments& pairs);

    bool IsPending() const { return !old_values_.empty(); }
    bool IsOverdue() const;
    std::string Names() const { return NamesOf(old_values_); }

    // Whether the values are still, or again, the old ones. False too when they cannot be read.
    bool IsUnchanged(const Options& options) const;

    // Forgets the old values: the new ones stay.
    Failure Withdraw();

    // Sets the old values and forgets them. They are kept as long as the daemon does not answer, and moved to
    // RefusedFile when it refuses them.
    Failure TakeBack(const Options& options);

private:
    void Load();
    Failure Keep(const Assignments& present, int seconds);

    int lock_ = -1;
    Failure error_;
    int64_t due_s_ = 0;  // on the clock that runs since the machine started
    std::string boot_;   // which start of the machine that was
    Assignments old_values_;
};

// Whether there may be a pending set. Only looks, and makes no state folder.
bool MayBePending();

// Where a set is overdue, sets the old values before `command` runs. Returns the line that says so or why it could not
// be done; the empty text when there is nothing to say. kobctl confirm does this itself.
std::string RestoreOverdue(const std::string& command);

// The file of old values that the daemon refused to take back.
std::string RefusedFile();
}  // namespace kobd::client
