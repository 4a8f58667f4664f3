// The file of the pending set, and the process that waits for its time.
#include "client/state/pending_set.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>

#include "client/dictionary/diagnose.h"
#include "client/dictionary/dictionary.h"
#include "client/requests/read_values.h"
#include "daemon/base/result.h"
#include "host/state/state_store.h"
#include "platform/message.h"

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

// What stands against setting the object until a confirmation, or the empty text.
std::string WhyNot(const Assignment& pair)
{
    const ObjectEntry* object = FindObject(pair.name);
    if (const std::string wrong = WhatIsWrong(pair.name, pair.value); !wrong.empty()) return wrong;
    if (object->access == Access::kWriteOnly) return pair.name + " is write-only: its old value cannot be kept";
    if (object->access == Access::kAction) return pair.name + " is an action: it cannot be taken back";
    return "";
}

Words NamesOf(const std::vector<Assignment>& pairs)
{
    Words names;
    for (const Assignment& pair : pairs) names.push_back(pair.name);
    return names;
}

// Reads the present values of what `pairs` name. What stands against it, with its code, or the empty text.
std::string ReadPresent(const Options& options, const std::vector<Assignment>& pairs, std::vector<Assignment>* present,
                        int* code)
{
    *code = kInvalidArgument;
    for (const Assignment& pair : pairs)
        if (std::string why = WhyNot(pair); !why.empty()) return why;
    Values values;
    const Response response = ReadValues(options, NamesOf(pairs), &values);
    *code = response.code;
    if (response.from_bus) return WhyNoAnswer(options, response.code) + ": " + CodeText(response.code);
    if (response.code != 0) return CodeText(response.code);
    for (const Assignment& pair : pairs)
    {
        const auto found = values.find(pair.name);
        *code = kSystemError;
        if (found == values.end()) return pair.name + " could not be read";
        *code = kInvalidArgument;
        if (const std::string wrong = WhatIsWrong(pair.name, found->second); !wrong.empty())
            return "the present value could not be set again: " + wrong;
        present->push_back({pair.name, found->second});
    }
    return "";
}

// Opens and locks the file within two seconds. -1 with errno, EWOULDBLOCK when another process keeps the lock.
int OpenLocked(const char* name)
{
    constexpr int kTries = 20;
    constexpr useconds_t kPauseUs = 100000;
    const int file = open((host::StateFolder() + name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    for (int i = 0; file >= 0 && i < kTries; ++i)
    {
        if (flock(file, LOCK_EX | LOCK_NB) == 0) return file;
        usleep(kPauseUs);
    }
    const int error = errno;
    if (file >= 0) close(file);
    errno = error;
    return -1;
}

// Closes all that the caller had open but `kept`, high numbers too: procd's functions hold a service's lock
// on descriptor 1000, and a waiting process that inherits it would keep the service from being stopped.
void CloseInherited(int kept)
{
    std::vector<int> files;
    if (DIR* folder = opendir("/proc/self/fd"))
    {
        while (const dirent* entry = readdir(folder)) files.push_back(atoi(entry->d_name));
        closedir(folder);
    }
    for (const int file : files)
        if (file > STDERR_FILENO && file != kept) close(file);
}

// Leaves the caller's session and files, and says so by a byte on `ready`, which it closes.
bool Detach(int ready)
{
    setsid();
    CloseInherited(ready);
    const int nothing = open("/dev/null", O_RDWR);
    for (int file = 0; file < 3; ++file) dup2(nothing, file);
    for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
    signal(SIGPIPE, SIG_IGN);  // the caller may be dead by now, which changes nothing
    const bool told = chdir("/") == 0 && (write(ready, "", 1) == 1 || errno == EPIPE);
    close(ready);
    return told;
}

[[noreturn]] void WaitAndRestore(int ready)
{
    // One waiting process is enough. Another one that is about to end has two seconds to do so.
    if (!Detach(ready) || OpenLocked("/confirm.waiting") < 0) _exit(1);
    for (;;)
    {
        {
            PendingSet pending;
            if (!pending.IsPending() && (pending.Error().empty() || !MayBePending())) _exit(0);
            if (pending.IsOverdue()) (void)pending.TakeBack({});  // kept and tried again while nobody answers
        }
        sleep(1);
    }
}

// Waits until the new process has let go of everything that it inherited. False with errno.
bool WaitUntilDetached(int ready)
{
    constexpr int kLongestMs = 2000;
    pollfd there = {ready, POLLIN, 0};
    char byte = 0;
    const int arrived = poll(&there, 1, kLongestMs);
    if (arrived == 0) errno = ETIMEDOUT;
    if (arrived <= 0) return false;
    errno = ECHILD;  // the end of the pipe without a byte: it is dead
    return read(ready, &byte, 1) == 1;
}
}  // namespace

PendingSet::PendingSet() : lock_(OpenLocked("/confirm.lock"))
{
    const std::string folder = host::StateFolder();
    if (lock_ >= 0)
        Load();
    else if (errno == EWOULDBLOCK)
        error_ = "another kobctl has been at work on " + folder + "/confirm for two seconds, try again";
    else
        error_ = "cannot write in " + folder + ": " + strerror(errno);
}

PendingSet::~PendingSet()
{
    if (lock_ >= 0) close(lock_);
}

void PendingSet::Load()
{
    host::Settings settings;
    if (host::LoadSettings(PendingFile(), &settings) == host::LoadResult::kDamaged)
        error_ = PendingFile() + " is damaged, kept as " + host::KeepAside(PendingFile());
    bool old = false;
    for (const auto& [name, value] : settings)
    {
        if (old) old_values_.push_back({name, value});
        if (name == kOldValues) old = true;
        if (!old && name == kBoot) boot_ = value;
        if (!old && name == kDue) std::from_chars(value.data(), value.data() + value.size(), due_s_);
    }
    pending_ = !old_values_.empty();
}

std::string PendingSet::Begin(const Options& options, const std::vector<Assignment>& pairs, int* code)
{
    *code = kSystemError;
    if (!error_.empty()) return error_;
    *code = kInvalidArgument;
    if (pending_) return "another set waits for kobctl confirm (" + Names() + ")";
    if (std::string why = ReadPresent(options, pairs, &old_values_, code); !why.empty()) return why;
    const auto bytes = ItemBytes(SetItems(old_values_));
    *code = kBufferLimit;
    if (!bytes || bytes->size() > kPayloadMax) return "the old values do not fit one request";
    *code = kSystemError;
    due_s_ = NowS() + options.confirm_s;
    boot_ = ThisBoot();
    pending_ = host::SaveText(PendingFile(), Text());
    if (pending_ && StartWaiting()) return "";
    const std::string why = strerror(errno);
    if (pending_) Withdraw();
    return "cannot keep the old values: " + why;
}

std::string PendingSet::Text() const
{
    std::string text = "# These values return unless kobctl confirm comes in time.\n";
    text += std::string(kBoot) + "=" + boot_ + "\n" + kDue + "=" + std::to_string(due_s_) + "\n" + kOldValues + "\n";
    for (const auto& [name, value] : old_values_) text += name + "=" + host::Escape(value) + "\n";
    return text + kNothing;
}

bool PendingSet::IsOverdue() const { return pending_ && (boot_ != ThisBoot() || NowS() >= due_s_); }

std::string PendingSet::Names() const
{
    std::string names;
    for (const Assignment& pair : old_values_) names += (names.empty() ? "" : ", ") + pair.name;
    return names;
}

bool PendingSet::IsUnchanged(const Options& options) const
{
    Values values;
    if (ReadValues(options, NamesOf(old_values_), &values).code != 0) return false;
    return std::all_of(old_values_.begin(), old_values_.end(),
                       [&](const Assignment& old) { return values[old.name] == old.value; });
}

bool PendingSet::Withdraw()
{
    // Replaced by an empty file first, which lasts: a file that only was removed may be back after a power cut.
    if (!host::SaveText(PendingFile(), kNothing)) return false;
    pending_ = false;
    return unlink(PendingFile().c_str()) == 0;
}

std::string PendingSet::TakeBack(const Options& options)
{
    const Response response = Call(kRequestSet, SetItems(old_values_), options.timeout_ms);
    if (response.from_bus)
        return "the old values of " + Names() + " are not back yet: " + ResultText(response.code) +
               "; kobctl goes on trying";
    if (response.code == 0)
        return Withdraw() ? "" : "the old values are back, but " + PendingFile() + " cannot be removed";
    if (rename(PendingFile().c_str(), RefusedFile().c_str()) != 0) return "cannot rename " + PendingFile();
    pending_ = false;
    return "the daemon refused the old values of " + Names() + ": " + ResultText(response.code) +
           "; they are kept in " + RefusedFile();
}

bool StartWaiting()
{
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) return false;
    const pid_t process = fork();
    if (process == 0) WaitAndRestore(ready[1]);
    close(ready[1]);
    const bool detached = process > 0 && WaitUntilDetached(ready[0]);
    const int error = errno;
    close(ready[0]);
    errno = error;
    return detached;
}

std::string RestoreOverdue(const std::string& command)
{
    for (const char* without :
         {"", "help", "--help", "--version", "confirm", "complete-names", "list", "describe", "doctor"})
        if (command == without) return "";
    if (!MayBePending()) return "";
    PendingSet pending;
    if (!pending.IsOverdue()) return pending.Error();
    const std::string error = pending.TakeBack({});
    return error.empty() ? "not confirmed in time, the old values are back: " + pending.Names() : error;
}

std::string RefusedFile() { return host::StateFolderName() + "/confirm.refused"; }

bool MayBePending() { return access((host::StateFolderName() + "/confirm").c_str(), F_OK) == 0; }
}  // namespace kobd::client
