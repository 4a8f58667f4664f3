// The file of the pending set.
#include "client/state/pending_set.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <fstream>

#include "client/dictionary/dictionary.h"
#include "client/requests/request.h"
#include "client/state/waiting_process.h"
#include "daemon/base/result.h"
#include "host/state/state_store.h"

namespace kobd::client
{
namespace
{
constexpr const char* kDue = "due";
constexpr const char* kBoot = "boot";
constexpr const char* kOldValues = "[old values]";
constexpr const char* kNothing = "end\n";  // a settings file without settings

std::string PendingFile() { return host::StateFolder() + "/confirm"; }

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

Response ReadNamed(const Options& options, const Assignments& pairs, Values* values)
{
    Words names;
    for (const Assignment& pair : pairs) names.push_back(pair.name);
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

PendingSet::PendingSet() : lock_(OpenLocked("/confirm.lock"))
{
    if (lock_ >= 0)
        Load();
    else if (errno == EWOULDBLOCK)
        error_ = {kSystemError, "another kobctl has been at work on " + PendingFile() + " for two seconds, try again"};
    else
        error_ = SystemFailure("cannot write in " + host::StateFolder());
}

PendingSet::~PendingSet()
{
    if (lock_ >= 0) close(lock_);
}

void PendingSet::Load()
{
    host::Settings settings;
    if (host::LoadSettings(PendingFile(), &settings) == host::LoadResult::kDamaged)
        error_ = {kSystemError, PendingFile() + " is damaged, kept as " + host::KeepAside(PendingFile())};
    bool old = false;
    for (const auto& [name, value] : settings)
    {
        if (old) old_values_.push_back({name, value});
        if (name == kOldValues) old = true;
        if (!old && name == kBoot) boot_ = value;
        if (!old && name == kDue) std::from_chars(value.data(), value.data() + value.size(), due_s_);
    }
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
    due_s_ = NowS() + seconds;
    boot_ = ThisBoot();
    std::string text = "# These values return unless kobctl confirm comes in time.\n";
    text += std::string(kBoot) + "=" + boot_ + "\n" + kDue + "=" + std::to_string(due_s_) + "\n" + kOldValues + "\n";
    for (const auto& [name, value] : present) text += name + "=" + host::Escape(value) + "\n";
    const bool saved = host::SaveText(PendingFile(), text + kNothing);
    if (saved) old_values_ = present;
    if (saved && StartWaiting()) return {};
    Failure failure = SystemFailure("cannot keep the old values");
    if (saved) (void)Withdraw();
    return failure;
}

bool PendingSet::IsOverdue() const { return IsPending() && (boot_ != ThisBoot() || NowS() >= due_s_); }

bool PendingSet::IsUnchanged(const Options& options) const
{
    Values values;
    if (ReadNamed(options, old_values_, &values).code != 0) return false;
    return std::all_of(old_values_.begin(), old_values_.end(),
                       [&](const Assignment& old) { return values[old.name] == old.value; });
}

Failure PendingSet::Withdraw()
{
    // Replaced by an empty file first, which lasts: a file that only was removed may be back after a power cut.
    if (!host::SaveText(PendingFile(), kNothing)) return SystemFailure("cannot write " + PendingFile());
    old_values_.clear();
    return unlink(PendingFile().c_str()) == 0 ? Failure() : SystemFailure("cannot remove " + PendingFile());
}

Failure PendingSet::TakeBack(const Options& options)
{
    const Response response = Call(options, KOBD_SET, SetItems(old_values_));
    if (response.from_bus)
        return {response.code, "the old values of " + Names() + " are not back yet: " + ResultText(response.code) +
                                   "; kobctl goes on trying"};
    if (response.code == 0)
    {
        Failure failure = Withdraw();
        if (failure) failure.what = "the old values are back, but kobctl " + failure.what;
        return failure;
    }
    const std::string names = Names();
    if (rename(PendingFile().c_str(), RefusedFile().c_str()) != 0)
        return SystemFailure("cannot rename " + PendingFile());
    old_values_.clear();
    return {response.code, "the daemon refused the old values of " + names + ": " + ResultText(response.code) +
                               "; they are kept in " + RefusedFile()};
}

bool MayBePending() { return access((host::StateFolderName() + "/confirm").c_str(), F_OK) == 0; }

std::string RestoreOverdue(const std::string& command)
{
    for (const char* without :
         {"", "help", "--help", "--version", "confirm", "complete-names", "list", "describe", "doctor"})
        if (command == without) return "";
    if (!MayBePending()) return "";
    PendingSet pending;
    if (!pending.IsOverdue()) return pending.Error().what;
    const std::string names = pending.Names();
    const Failure failure = pending.TakeBack({});
    return failure ? failure.what : "not confirmed in time, the old values are back: " + names;
}

std::string RefusedFile() { return host::StateFolderName() + "/confirm.refused"; }
}  // namespace kobd::client
