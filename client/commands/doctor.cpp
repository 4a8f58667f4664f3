// kobctl doctor: what kobd needs, looked at from outside.
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "client/commands/commands.h"
#include "client/library/kobd_client.h"
#include "client/requests/log_window.h"
#include "client/requests/request.h"
#include "client/state/pending_set.h"
#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "host/state/state_store.h"
#include "platform/message.h"

namespace kobd::client
{
namespace
{
constexpr long kMessageLimit = kMessageMax;       // kernel.msgmax in bytes: one message
constexpr long kQueueLimit = 16384;               // kernel.msgmnb in bytes: the daemon asks for that much
constexpr unsigned long kLeastFree = 256 * 1024;  // bytes: the state is written beside the old one
constexpr size_t kRefusalsShown = 3;

enum class Finding
{
    kOk,
    kNote,
    kWrong,
};

class Report
{
public:
    explicit Report(const Options& options) : options_(options) {}

    void Say(Finding finding, const char* subject, const std::string& text)
    {
        const char* word = finding == Finding::kOk ? "ok" : finding == Finding::kNote ? "note" : "WRONG";
        const Colour colour = finding == Finding::kOk     ? Colour::kGreen
                              : finding == Finding::kNote ? Colour::kYellow
                                                          : Colour::kRed;
        if (options_.json)
            printf("%s{\"finding\":\"%s\",\"subject\":\"%s\",\"text\":%s}", first_ ? "[" : ",", word, subject,
                   JsonString(text).c_str());
        else
            printf("%s%*s %-8s %s\n", Coloured(colour, word).c_str(), 5 - static_cast<int>(strlen(word)), "", subject,
                   Escaped(text).c_str());
        first_ = false;
        wrong_ = wrong_ || finding == Finding::kWrong;
    }

    void Judge(bool well, const char* subject, const std::string& text, const std::string& advice)
    {
        Say(well ? Finding::kOk : Finding::kWrong, subject, well ? text : text + ": " + advice);
    }

    int Finish() const
    {
        if (options_.json) printf("]\n");
        return wrong_ ? 1 : 0;
    }

private:
    const Options& options_;
    bool first_ = true;
    bool wrong_ = false;
};

void LookAtDaemon(const Options& options, Report* report)
{
    kobd_module daemon{};
    const int error = kobd_module_look(KOBD_MODULE_DAEMON, &daemon);
    if (error == EACCES) return report->Say(Finding::kWrong, "daemon", WhyNoAnswer(options, kNotRunning));
    if (daemon.claimed == 0) return report->Say(Finding::kWrong, "daemon", "kobd is not running on this bus: start it");
    const auto start = std::chrono::steady_clock::now();
    const Response response = Call(kRequestTableMaxRow, {Item(kTagTableName, "FlowTable")}, options.timeout_ms);
    if (response.code == kInitializeFailed)
        return report->Say(Finding::kWrong, "daemon", "there is no message queue left for its answer: see msgmni");
    const auto spent = std::chrono::steady_clock::now() - start;
    const auto us = std::chrono::duration_cast<std::chrono::microseconds>(spent).count();
    report->Judge(response.code == 0, "daemon",
                  response.code == 0 ? "answers in " + std::to_string(us) + " microseconds"
                                     : "does not answer: " + WhyNoAnswer(options, response.code),
                  "it runs but is stuck; look at its log");
}

void LookAtLimit(const char* name, long least, Report* report)
{
    long value = 0;
    std::ifstream(std::string("/proc/sys/kernel/") + name) >> value;
    report->Judge(value >= least, "limits", std::string("kernel.") + name + " is " + std::to_string(value),
                  std::string("sysctl -w kernel.") + name + "=" + std::to_string(least));
}

// Every module has a queue, and every client one while it waits.
void LookAtQueueCount(Report* report)
{
    long most = 0;
    std::ifstream("/proc/sys/kernel/msgmni") >> most;
    std::ifstream list("/proc/sysvipc/msg");
    long used = -1;  // the heading
    for (std::string line; std::getline(list, line);) ++used;
    report->Judge(used < most * 9 / 10, "limits",
                  "kernel.msgmni is " + std::to_string(most) + ", " + std::to_string(std::max(0L, used)) + " in use",
                  "raise it, or end what leaves queues behind (ipcs -q)");
}

void LookAtQueue(uint32_t module, const char* whose, Report* report)
{
    char text[160];
    kobd_module seen{};
    const int error = kobd_module_look(module, &seen);
    if (error != 0 || seen.has_queue == 0)
    {
        snprintf(text, sizeof text, "0x%08X (%s): %s", module, whose, error == 0 ? "no queue" : strerror(error));
        const bool denied = error == EACCES;
        return report->Say(error != 0 ? Finding::kWrong : Finding::kNote, "queue",
                           text + std::string(denied       ? ": be the daemon's user or root"
                                              : error == 0 ? ", nobody has joined"
                                                           : ""));
    }
    snprintf(text, sizeof text, "0x%08X (%s): %llu messages waiting, it holds %llu bytes", module, whose,
             static_cast<unsigned long long>(seen.messages), static_cast<unsigned long long>(seen.capacity));
    const bool left = seen.messages > 0 && seen.claimed == 0;
    const bool full = seen.messages >= 8;
    report->Judge(!left && !full, "queue", text,
                  left ? "the program that had it is gone" : "the program that has it does not read");
}

void LookAtLog(Report* report)
{
    struct stat status;
    if (stat(kLogFile, &status) != 0)
        return report->Say(Finding::kNote, "log",
                           std::string(kLogFile) + ": " + strerror(errno) + ", nothing to tell yet");
    report->Judge(access(kLogFile, R_OK) == 0, "log",
                  std::string(kLogFile) + " has " + std::to_string(status.st_size) + " of " +
                      std::to_string(kLogRotateBytes) + " bytes",
                  "it cannot be read by this user, so refusals are told without their reason");
    if (access(kDebugSwitchFile, F_OK) == 0)
        report->Say(Finding::kNote, "log",
                    std::string("debug lines are on, rm ") + kDebugSwitchFile + " turns them off");
}

std::string WhatIsPending()
{
    if (!MayBePending()) return "";
    const PendingSet pending;
    return pending.IsPending() ? pending.Names() + ": waiting for kobctl confirm" : pending.Error();
}

void LookAtState(Report* report)
{
    const std::string folder = host::StateFolderName();
    struct statvfs disk;
    if (access(folder.c_str(), R_OK | W_OK | X_OK) != 0 || statvfs(folder.c_str(), &disk) != 0)
        return report->Say(Finding::kWrong, "state",
                           folder + ": " + strerror(errno) + ": KOBD_STATE_DIR has to name the daemon's folder");
    report->Say(Finding::kOk, "state", folder);
    const unsigned long long free_bytes = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
    report->Judge(free_bytes >= kLeastFree, "state", std::to_string(free_bytes / 1024) + " KB free",
                  "values cannot be made durable; make room");
    if (const std::string pending = WhatIsPending(); !pending.empty()) report->Say(Finding::kNote, "state", pending);
    if (access(RefusedFile().c_str(), F_OK) == 0)
        report->Say(Finding::kWrong, "state",
                    RefusedFile() + " has old values that could not be set back: set what is needed and remove it");
}

void LookAtUci(Report* report)
{
    const char* path = getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((folder + "/uci").c_str(), X_OK) == 0) return report->Say(Finding::kOk, "uci", folder + "/uci");
    report->Say(Finding::kNote, "uci", "not on the PATH, kobd uses its own");
}

void LookAtRefusals(Report* report)
{
    std::vector<LogLine> lines = LastLogLines();
    std::erase_if(lines, [](const LogLine& line) { return line.message.find("verify error") == std::string::npos; });
    if (lines.empty()) report->Say(Finding::kOk, "refusals", "none in the log");
    for (size_t i = lines.size() - std::min(lines.size(), kRefusalsShown); i < lines.size(); ++i)
        report->Say(Finding::kNote, "refusals", lines[i].time + " " + lines[i].message);
}
}  // namespace

int CommandDoctor(const Options& options, const Words&)
{
    Report report(options);
    LookAtDaemon(options, &report);
    LookAtLimit("msgmax", kMessageLimit, &report);
    LookAtLimit("msgmnb", kQueueLimit, &report);
    LookAtQueueCount(&report);
    LookAtQueue(KOBD_MODULE_DAEMON, "kobd", &report);
    LookAtQueue(KOBD_MODULE_NOTIFY, "announcements", &report);
    LookAtQueue(KOBD_MODULE_SERVICES, "services", &report);
    LookAtQueue(KOBD_MODULE_FORWARD, "forwarded events", &report);
    LookAtLog(&report);
    LookAtState(&report);
    LookAtUci(&report);
    LookAtRefusals(&report);
    return report.Finish();
}
}  // namespace kobd::client
