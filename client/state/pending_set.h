// Sets that are taken back unless they are confirmed. The old values wait in the database until kobctl confirm removes
// them or their time is up. A detached kobctl watches the time. If it is killed, the next kobctl or the next start of
// the service takes over. A restart of the machine ends the time, too: a user who can no longer reach the router pulls
// the plug, and the old values return.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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
    std::string Names() const { return Joined(PendingNames()); }
    Words PendingNames() const;

    struct OldValue
    {
        std::string name;
        std::string old;
        std::optional<std::string> now;  // what it was set to; nothing: not known
    };
    const std::vector<OldValue>& OldValues() const { return old_values_; }

    // To be called when the new values are set: one that is another value by the end of the time was set by somebody
    // else, and stays.
    void NoteNewValues(const Options& options, const Assignments& sent);

    // Forgets the old values, and those that were refused: the new ones stay.
    Failure Withdraw();

    // Sets the old values and forgets them. They are kept as long as the daemon does not answer, and become Refused
    // when it refuses them.
    Failure TakeBack(const Options& options);

    // "the old values are back: NAME, NAME; but what was changed since stays: NAME", of what TakeBack did.
    std::string Restored() const;

    // How the last set ended whose time was up, with the date, until the next Begin; else the empty text.
    const std::string& Ended() const { return ended_; }

    // "NAME=VALUE, NAME=VALUE", without the values of secrets, of the old values that the daemon refused, until
    // Withdraw; else the empty text.
    std::string Refused() const { return Joined(refused_); }
    Words RefusedNames() const;

private:
    void Load();
    Failure Keep(const Assignments& present, int seconds);
    Failure Finish();
    Failure End();
    bool WasChangedSince(const OldValue& value) const;
    Failure KeepRefused(const Options& options, int code, const Assignments& sent);

    int lock_ = -1;
    Failure error_;
    int64_t due_s_ = 0;   // on the clock that runs since the machine started
    std::string boot_;    // which start of the machine that was
    int64_t noted_ = -1;  // the last change of the history that belongs to the set; -1: not known
    std::vector<OldValue> old_values_;
    std::string ended_;
    Words refused_;   // NAME=VALUE, without the value of a secret
    Words restored_;  // names
    Words kept_;      // names
};

// The names whose values are not, or not again, the old ones. All when they cannot be read.
Words ChangedNames(const Options& options, const std::vector<PendingSet::OldValue>& old_values);

// Whether there may be a pending set, or old values that were refused. Only looks, and makes no state folder.
bool MayBePending();

// Where a set is overdue, sets the old values before `command` runs. Returns the line that says so or why it could not
// be done; the empty text when there is nothing to say. kobctl confirm does this itself.
std::string RestoreOverdue(const std::string& command);
}  // namespace kobd::client
