// The rows of the pending set in the database, under a lock of their own: the daemon writes the database, too, while
// the values are set.
#include "client/state/pending_set.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <ctime>
#include <fstream>
#include <initializer_list>

#include "client/dictionary/dictionary.h"
#include "client/requests/request.h"
#include "client/sim/step.h"
#include "client/state/daemon_state.h"
#include "client/state/waiting_process.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"
#include "host/state/folder.h"
#include "host/state/history.h"

namespace kobd::client
{
namespace
{
constexpr int kQuickMs = 1000;  // for an answer while others wait for the lock

Failure DatabaseFailure(const std::string& what)
{
    return {kSystemError, what + " the database in " + host::StateFolderName() + ": " + host::State()->Why()};
}

// Runs the statements, all or none.
Failure Write(std::initializer_list<const char*> statements)
{
    const host::State state;
    const auto changes = [&]
    {
        for (const char* statement : statements) state->Run(statement);
    };
    return state->Write(changes) ? Failure() : DatabaseFailure("cannot write");
}

// Seconds since the machine started, sleep included: setting the clock neither shortens nor lengthens
// what is pending.
int64_t NowS()
{
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec;
}

std::string ThisBoot()
{
    std::string id;
    std::ifstream("/proc/sys/kernel/random/boot_id") >> id;
    return id;
}

// Why the object cannot be set until a confirmation; the empty text when it can.
std::string WhyNot(const Assignment& pair)
{
    if (std::string wrong = WhatIsWrong(pair.name, pair.value); !wrong.empty()) return wrong;
    const ObjectEntry* object = FindObject(pair.name);
    if (object->access == Access::kWriteOnly) return pair.name + " is write-only: its old value cannot be kept";
    if (object->access == Access::kAction) return pair.name + " is an action: it cannot be taken back";
    return "";
}

template <typename Named>
Response ReadNamed(const Options& options, const std::vector<Named>& named, Values* values)
{
    Words names;
    for (const Named& one : named) names.push_back(one.name);
    return ReadValues(options, names, values);
}

// Reads the present values of what `pairs` name.
Failure ReadPresent(const Options& options, const Assignments& pairs, Assignments* present)
{
    for (const Assignment& pair : pairs)
        if (std::string why = WhyNot(pair); !why.empty()) return {kInvalidArgument, why};
    Values values;
    if (Failure failure = FailureOf(ReadNamed(options, pairs, &values), "cannot read the old values")) return failure;
    for (const Assignment& pair : pairs)
    {
        const auto found = values.find(pair.name);
        if (found == values.end()) return {kSystemError, pair.name + " could not be read"};
        if (const std::string wrong = WhatIsWrong(pair.name, found->second); !wrong.empty())
            return {kInvalidArgument, "the present value could not be set again: " + wrong};
        present->push_back({pair.name, found->second});
    }
    return {};
}
}  // namespace

PendingSet::PendingSet()
{
    UseDaemonsState();
    lock_ = OpenLocked("/confirm.lock");
    if (lock_ >= 0)
        Load();
    else if (errno == EWOULDBLOCK)
        error_ = {kSystemError, "another kobctl has been at work on the pending set in " + host::StateFolder() +
                                    " for two seconds, try again"};
    else
        error_ = SystemFailure("cannot write in " + host::StateFolder());
}

PendingSet::~PendingSet()
{
    if (lock_ >= 0) close(lock_);
}

void PendingSet::Load()
{
    const host::State state;
    const bool opened = state->Open(false);
    if (!opened && state->Error() == ENOENT) return;
    if (opened)
    {
        for (host::Query query = state->Ask("SELECT name, value FROM meta"); query.Next();)
        {
            const std::string value(query.Text(1));
            if (query.Text(0) == "boot") boot_ = value;
            if (query.Text(0) == "ended") ended_ = value;
            if (query.Text(0) == "noted") std::from_chars(value.data(), value.data() + value.size(), noted_);
            if (query.Text(0) == "due") std::from_chars(value.data(), value.data() + value.size(), due_s_);
        }
        for (host::Query query = state->Ask("SELECT name, old, new FROM pending ORDER BY rowid"); query.Next();)
            old_values_.push_back({std::string(query.Text(0)), std::string(query.Text(1)),
                                   query.IsNull(2) ? std::nullopt : std::optional(std::string(query.Text(2)))});
        for (host::Query query = state->Ask("SELECT name, old FROM refused"); query.Next();)
        {
            const std::string_view old = IsSecretObject(query.Text(0)) ? host::kSecretText : query.Text(1);
            refused_.push_back(std::string(query.Text(0)) + "=" + std::string(old));
        }
    }
    if (state->Failed()) error_ = DatabaseFailure("cannot read");
}

Failure PendingSet::Begin(const Options& options, const Assignments& pairs)
{
    if (error_) return error_;
    if (IsPending()) return {kInvalidArgument, "another set waits for kobctl confirm (" + Names() + ")"};
    Assignments present;
    if (Failure failure = ReadPresent(options, pairs, &present)) return failure;
    if (!FitsOneRequest(SetItems(present))) return {kBufferLimit, "the old values do not fit one request"};
    return Keep(present, options.confirm_s);
}

Failure PendingSet::Keep(const Assignments& present, int seconds)
{
    due_s_ = NowS() + 1 + seconds;  // NowS rounds down, and nobody gets less time than asked for
    boot_ = ThisBoot();
    noted_ = -1;
    const auto changes = [&]
    {
        const host::State state;
        for (const auto& [name, value] : present)
            state->Run("INSERT INTO pending(name, old) VALUES(?, ?)", name, value);
        state->Run("DELETE FROM meta WHERE name IN ('ended', 'noted')");
        state->Run("INSERT OR REPLACE INTO meta VALUES('due', ?), ('boot', ?)", std::to_string(due_s_), boot_);
    };
    if (!host::State()->Write(changes)) return DatabaseFailure("cannot keep the old values in");
    for (const auto& [name, value] : present) old_values_.push_back({name, value, {}});
    if (StartWaiting()) return {};
    Failure failure = SystemFailure("cannot keep the old values");
    (void)Withdraw();
    return failure;
}

void PendingSet::NoteNewValues(const Options& options, const Assignments& sent)
{
    Values values;
    Options quick = options;  // others wait for the lock meanwhile
    quick.timeout_ms = std::min(kQuickMs, options.timeout_ms.value_or(kQuickMs));
    if (ReadNamed(quick, old_values_, &values).code != 0)
        for (const auto& [name, value] : sent) values.insert_or_assign(name, value);
    const host::State state;
    const auto changes = [&]
    {
        for (const auto& [name, value] : values) state->Run("UPDATE pending SET new = ? WHERE name = ?", value, name);
        state->Run("INSERT OR REPLACE INTO meta SELECT 'noted', ifnull(max(id), 0) FROM history");
    };
    state->Write(changes);  // after a failure all old values return, which is what was promised
}

Words PendingSet::PendingNames() const
{
    Words names;
    for (const OldValue& value : old_values_) names.push_back(value.name);
    return names;
}

Words PendingSet::RefusedNames() const
{
    Words names;
    for (const std::string& pair : refused_) names.push_back(pair.substr(0, pair.find('=')));
    return names;
}

bool PendingSet::IsOverdue() const { return IsPending() && (boot_ != ThisBoot() || NowS() >= due_s_); }

Words ChangedNames(const Options& options, const std::vector<PendingSet::OldValue>& old_values)
{
    Values values;
    const bool known = ReadNamed(options, old_values, &values).code == 0;
    Words names;
    for (const PendingSet::OldValue& value : old_values)
        if (!known || values[value.name] != value.old) names.push_back(value.name);
    return names;
}

Failure PendingSet::Withdraw()
{
    if (const Failure failure = Write({"DELETE FROM pending", "DELETE FROM refused"})) return failure;
    old_values_.clear();
    refused_.clear();
    return {};
}

// Whether the history has a third value for the object since the set, which may have come and gone. Of a secret it has
// none.
bool PendingSet::WasChangedSince(const OldValue& value) const
{
    if (noted_ < 0 || !value.now || IsSecretObject(value.name)) return false;
    const host::State state;
    if (!state->Open(false)) return false;
    host::Query query = state->Ask(
        "SELECT 1 FROM history WHERE id > ? AND kind = 'object' AND name = ? AND new <> ? AND new <> ? LIMIT 1", noted_,
        value.name, value.old, *value.now);
    return query.Next();
}

Failure PendingSet::TakeBack(const Options& options)
{
    Values values;
    Assignments back;
    Assignments differing;  // those of `back` that the router shows otherwise
    restored_.clear();
    kept_.clear();
    const std::vector<SimLine> simulated = SimLinesInPassing();
    Response response = ReadNamed(options, old_values_, &values);
    for (const OldValue& value : old_values_)
    {
        const std::string& shown = values[value.name];
        const bool is_simulated = ShowsSimulated(simulated, value.name);
        const bool differs = value.now && shown != *value.now && shown != value.old && !is_simulated;
        const bool kept = response.code == 0 && (differs || WasChangedSince(value));
        (kept ? kept_ : restored_).push_back(value.name);
        if (!kept) back.push_back({value.name, value.old});
        if (!kept && (shown != value.old || is_simulated)) differing.push_back({value.name, value.old});
    }
    if (response.code == 0)
        response = differing.empty() ? Call(options, KOBD_UPDATE, {}) : Call(options, KOBD_SET, SetItems(differing));
    if (response.from_bus)
        return {response.code, "the old values of " + Names() + " are not back yet: " + ResultText(response.code) +
                                   "; kobctl goes on trying"};
    if (response.code != 0) return KeepRefused(options, response.code, back);
    if (const std::string why = SavingText(LastSaving(kQuickMs)); !why.empty())
        return {kSystemError, "the old values of " + Names() + " are back, but " + why + "; kobctl goes on trying"};
    return Finish();
}

Failure PendingSet::Finish()
{
    Failure failure = IsOverdue() ? End() : Withdraw();
    if (failure) failure.what = "the old values are back, but kobctl " + failure.what;
    return failure;
}

std::string PendingSet::Restored() const
{
    if (kept_.empty()) return "the old values are back: " + Joined(restored_);
    const std::string kept = "what was changed since stays: " + Joined(kept_);
    return restored_.empty() ? kept : "the old values are back: " + Joined(restored_) + "; but " + kept;
}

// The process that waits has no terminal: how the set ended is kept for those who ask later.
Failure PendingSet::End()
{
    char now[sizeof "2000-12-31 23:59:59"];
    const time_t seconds = time(nullptr);
    tm parts = {};
    strftime(now, sizeof now, "%F %T", localtime_r(&seconds, &parts));
    const std::string ended = "restored at " + std::string(now) + ": " + Restored();
    const auto changes = [&]
    {
        const host::State state;
        state->Run("DELETE FROM pending");
        state->Run("DELETE FROM refused");
        state->Run("INSERT OR REPLACE INTO meta VALUES('ended', ?)", ended);
    };
    if (!host::State()->Write(changes)) return DatabaseFailure("cannot write");
    old_values_.clear();
    refused_.clear();
    ended_ = ended;
    return {};
}

// Of the old values that were sent, those that the router still does not show were refused.
Failure PendingSet::KeepRefused(const Options& options, int code, const Assignments& sent)
{
    Values values;
    const bool known = ReadNamed(options, sent, &values).code == 0;
    Assignments refused = sent;
    std::erase_if(refused, [&](const Assignment& pair) { return known && values[pair.name] == pair.value; });
    if (refused.empty()) return Finish();
    const auto changes = [&]
    {
        const host::State state;
        for (const auto& [name, value] : refused)
            state->Run("INSERT OR REPLACE INTO refused VALUES(?, ?)", name, value);
        state->Run("DELETE FROM pending");
    };
    if (!host::State()->Write(changes)) return DatabaseFailure("cannot write");
    old_values_.clear();
    return {code, "the router refused the old values of " + NamesOf(refused) + ": " + ResultText(code) +
                      "; kobctl doctor shows them"};
}

bool MayBePending()
{
    UseDaemonsState();
    const host::State state;
    if (!state->Open(false)) return false;  // the command itself says so
    host::Query query = state->Ask("SELECT 1 FROM pending UNION ALL SELECT 1 FROM refused LIMIT 1");
    return query.Next();
}

std::string RestoreOverdue(const std::string& command)
{
    for (const char* without : {"", "help", "--help", "--version", "confirm", "complete", "list", "describe", "doctor"})
        if (command == without) return "";
    if (!MayBePending()) return "";
    PendingSet pending;
    if (!pending.IsOverdue()) return pending.Error().what;
    const Failure failure = pending.TakeBack({});
    return failure ? failure.what : "not confirmed in time, " + pending.Restored();
}
}  // namespace kobd::client
