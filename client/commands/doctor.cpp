// kobctl doctor: looks from outside at what kobd needs.
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>

#include "client/commands/commands.h"
#include "client/log/log_window.h"
#include "client/output/terminal.h"
#include "client/requests/request.h"
#include "client/state/daemon_state.h"
#include "client/state/pending_set.h"
#include "daemon/base/log.h"
#include "daemon/base/messages.h"
#include "dictionary/catalogue/secrets.h"
#include "host/state/database.h"
#include "host/state/folder.h"
#include "platform/message.h"

namespace kobd::client
{
namespace
{
constexpr unsigned long kLeastFree = 256 * 1024;  // bytes: a commit's pages
constexpr size_t kLinesShown = 3;                 // of the log
constexpr size_t kNamesShown = 10;                // of what is not committed
constexpr int64_t kSlowUs = 100'000;              // microseconds: a daemon at rest answers in fewer than 1000

enum Finding
{
    kWell,
    kNote,
    kWrong,
};

// The findings so far.
struct Report
{
    void Say(Finding finding, const char* subject, const std::string& what)
    {
        static constexpr const char* kWords[] = {"ok", "note", "WRONG"};
        static constexpr Colour kColours[] = {Colour::kGreen, Colour::kYellow, Colour::kRed};
        const std::string blanks(9 - strlen(subject), ' ');
        data.push_back({{"finding", kWords[finding]}, {"subject", subject}, {"text", what}});
        text += Coloured(kColours[finding], kWords[finding], 6) + subject + blanks + Escaped(what) + "\n";
        wrong = wrong || finding == kWrong;
    }

    void Judge(bool well, const char* subject, const std::string& what, const std::string& advice)
    {
        Say(well ? kWell : kWrong, subject, well ? what : what + ": " + advice);
    }

    Json data = Json::array();
    std::string text = {};
    bool wrong = false;
};

// "uci (process 4711)", a command that the process has started and waits for; the empty text where it has none.
std::string CommandOf(int process)
{
    const std::string task = std::to_string(process);
    std::error_code error;
    for (std::filesystem::directory_iterator thread("/proc/" + task + "/task", error), end; !error && thread != end;
         thread.increment(error))
    {
        int child = 0;
        std::string name;
        if (!(std::ifstream(thread->path() / "children") >> child)) continue;
        // A shell that waits, too: what it runs tells more.
        if (const std::string of_shell = CommandOf(child); !of_shell.empty()) return of_shell;
        std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
        return name + " (process " + std::to_string(child) + ")";
    }
    return "";
}

void LookAtDaemon(const Options& options, Report* report)
{
    kobd_module daemon{};
    const int error = kobd_module_look(KOBD_MODULE_DAEMON, &daemon);
    if (error != EACCES && daemon.claimed == 0)
        return report->Say(kWrong, "daemon",
                           "kobd is not running on this bus: start it with service kobd start, or ./run in a clone");
    const auto start = std::chrono::steady_clock::now();
    const Response response = Call(options, KOBD_TABLE_MAX_ROW, {Item(kTagTableName, "FlowTable")});
    if (error == EACCES && response.code != 0) return report->Say(kWrong, "daemon", response.reason);
    if (response.code == KOBD_INITIALIZE_FAILED)
        return report->Say(kWrong, "daemon", "there is no message queue left for its answer: see msgmni");
    const auto spent = std::chrono::steady_clock::now() - start;
    const auto us = std::chrono::duration_cast<std::chrono::microseconds>(spent).count();
    const std::string process = daemon.process != 0 ? "process " + std::to_string(daemon.process) : "kobd";
    if (response.code == 0 && us > kSlowUs)
        return report->Say(kNote, "daemon",
                           process + " answers slowly, after " + std::to_string(us / 1000) +
                               " milliseconds: another request may keep it busy, or the machine is loaded");
    const std::string command = response.code == 0 ? "" : CommandOf(daemon.process);
    report->Judge(response.code == 0, "daemon",
                  process + (response.code == 0 ? " answers in " + std::to_string(us) + " microseconds"
                                                : " does not answer: " + response.reason),
                  command.empty() ? "look at its log" : "it waits for its command " + command);
}

// Lists and dumps are handed over in files there, and the log is there.
void LookAtFiles(Report* report)
{
    constexpr unsigned long long kLeastForFiles = 1024 * 1024;  // bytes: the largest dump and some lines of the log
    const std::filesystem::path folder = std::filesystem::path(kLogFile).parent_path();
    struct statvfs disk;
    if (access(folder.c_str(), W_OK | X_OK) != 0 || statvfs(folder.c_str(), &disk) != 0)
        return report->Say(kWrong, "files",
                           folder.string() + ": " + strerror(errno) + ": tables cannot be shown or set");
    const unsigned long long free_bytes = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
    report->Judge(free_bytes >= kLeastForFiles, "files",
                  folder.string() + " has " + std::to_string(free_bytes / 1024) + " KB free",
                  "tables may not be shown or set; make room");
}

// A limit of the kernel; nothing where it does not tell.
std::optional<size_t> Limit(const char* name)
{
    size_t value = 0;
    if (!(std::ifstream(std::string("/proc/sys/kernel/") + name) >> value)) return {};
    return value;
}

void LookAtLimit(const char* name, size_t least, Report* report)
{
    const auto limit = Limit(name);
    if (!limit) return report->Say(kNote, "limits", std::string("kernel.") + name + " is unknown");
    const size_t value = *limit;
    report->Judge(value >= least, "limits", std::string("kernel.") + name + " is " + std::to_string(value),
                  std::string("sysctl -w kernel.") + name + "=" + std::to_string(least));
}

// Each module has a queue, and each client has one while it runs. A small kernel may tell neither number.
void LookAtQueueCount(Report* report)
{
    const auto most = Limit("msgmni");
    std::ifstream list("/proc/sysvipc/msg");
    long used = -1;  // the heading
    for (std::string line; std::getline(list, line);) ++used;
    const std::string what = "kernel.msgmni is " + (most ? std::to_string(*most) : "unknown") + ", " +
                             (used >= 0 ? std::to_string(used) : "an unknown number") + " in use";
    if (!most || used < 0) return report->Say(kNote, "limits", what);
    report->Judge(static_cast<size_t>(used) < *most * 9 / 10, "limits", what,
                  "raise it, or end what leaves queues behind (ipcs -q)");
}

void LookAtQueue(uint32_t module, const char* whose, Report* report)
{
    constexpr uint64_t kMessagesOfAReader = 8;  // a program that reads never leaves so many
    const std::string name = ModuleText(module) + " (" + whose + "): ";
    kobd_module seen{};
    const int error = kobd_module_look(module, &seen);
    const char* advice = error == EACCES ? ": be the daemon's user or root" : "";
    if (error != 0) return report->Say(kWrong, "queue", name + strerror(error) + advice);
    if (seen.has_queue == 0) return report->Say(kNote, "queue", name + "no queue, no program has joined");
    const bool left = seen.messages > 0 && seen.claimed == 0;
    report->Judge(!left && seen.messages < kMessagesOfAReader, "queue",
                  name + Counted(seen.messages, "message") + " waiting, the queue holds " +
                      std::to_string(seen.capacity) + " bytes",
                  left ? "the program that had it is gone" : "the program that has it does not read");
}

void LookAtLog(Report* report)
{
    struct stat status;
    if (stat(kLogFile, &status) != 0)
        return report->Say(kNote, "log", std::string(kLogFile) + ": " + strerror(errno) + ", nothing was logged yet");
    report->Judge(access(kLogFile, R_OK) == 0, "log",
                  std::string(kLogFile) + " has " + std::to_string(status.st_size) + " of " +
                      std::to_string(kLogRotateBytes) + " bytes",
                  "this user cannot read it, so refusals are shown without their reason; its owner may remove it");
    if (access(kDebugSwitchFile, F_OK) == 0)
        report->Say(kNote, "log", std::string("debug lines are on, rm ") + kDebugSwitchFile + " turns them off");
}

void LookAtPending(Report* report)
{
    if (!MayBePending()) return;
    const PendingSet pending;
    if (pending.IsPending()) report->Say(kNote, "state", pending.Names() + ": waiting for kobctl confirm");
    if (pending.Error()) report->Say(kNote, "state", pending.Error().what);
    if (!pending.Refused().empty())
        report->Say(kWrong, "state",
                    "these old values could not be set back: " + pending.Refused() +
                        "; set what is needed, then run kobctl confirm");
}

// Damaged databases that were kept, each with its log.
void LookAtDamaged(const std::string& folder, Report* report)
{
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder, error), end; !error && file != end; file.increment(error))
        if (const std::string name = file->path().filename();
            name.starts_with("kobd.db") && name.find(".damaged-") != name.npos && !name.ends_with("-wal"))
            report->Say(kNote, "state",
                        file->path().string() +
                            " is a damaged database, or the log of one that is gone: some settings may be in there "
                            "alone. Look at it with sqlite3, then remove it");
}

std::string RemedyOfDamage(bool daemon_runs)
{
    return daemon_runs ? "; run kobctl export, stop kobd, move kobd.db and kobd.db-wal away, start kobd, and import"
                       : "; when kobd meets the damage it keeps the file under another name, and serves what it has "
                         "read or the factory's values";
}

void LookAtDatabase(const std::string& folder, bool runs, Report* report)
{
    const host::State state;
    const bool opened = state->Open(false);
    std::error_code error;
    std::string found = "ok";
    if (opened)
        if (host::Query query = state->Ask("PRAGMA quick_check(1)"); query.Next()) found = query.Text(0);
    found.erase(0, found.rfind('\n') + 1);  // the line behind the name of the database
    const bool damaged = found != "ok" || state->IsDamaged();
    if (damaged || (state->Failed() && state->Error() != ENOENT))
        report->Say(kWrong, "state",
                    "the database in " + folder + (damaged ? " is damaged: " : " cannot be read: ") +
                        (state->Failed() ? state->Why() : found) + (damaged ? RemedyOfDamage(runs) : ""));
    else if (!opened && std::filesystem::is_empty(folder + "/kobd.db", error) && !error)
        report->Say(kWrong, "state", folder + "/kobd.db is empty: nothing is stored until the next set");
    constexpr int kLongestMs = 1000;  // the line of the daemon says whether it is busy
    if (const std::string why = LastSaving(kLongestMs).why_not; !why.empty())
        report->Say(kWrong, "state", "the last commit was not saved: " + why + "; mend that and run kobctl commit");
    Words names = NotCommitted().value_or(Words());
    if (names.size() > kNamesShown)
    {
        names.resize(kNamesShown);
        names.emplace_back("and others");
    }
    if (!names.empty())
        report->Say(kNote, "state", "set since the last commit: " + Joined(names) + "; kobctl commit saves it");
}

void LookAtState(Report* report)
{
    const bool answers = UseDaemonsState();
    const std::string folder = host::StateFolderName();
    struct statvfs disk;
    if (!answers && access(folder.c_str(), F_OK) != 0 && errno == ENOENT)
        return report->Say(kNote, "state",
                           "there is no folder " + folder + ": no kobd has run with it; KOBD_STATE_DIR names another");
    std::error_code error;
    if (std::filesystem::exists(folder, error) && !std::filesystem::is_directory(folder, error))
        return report->Say(kWrong, "state", folder + " is no folder: KOBD_STATE_DIR has to name the daemon's folder");
    if (access(folder.c_str(), R_OK | W_OK | X_OK) != 0 || statvfs(folder.c_str(), &disk) != 0)
        return report->Say(kWrong, "state",
                           folder + ": " + strerror(errno) + ": " +
                               (errno == EROFS ? "what changes will not survive; remount it"
                                               : "KOBD_STATE_DIR has to name the daemon's folder"));
    report->Say(kWell, "state", folder);
    const unsigned long long free_bytes = static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize;
    report->Judge(free_bytes >= kLeastFree, "state", std::to_string(free_bytes / 1024) + " KB free",
                  "values may not be made durable; make room");
    LookAtDatabase(folder, answers, report);
    LookAtDamaged(folder, report);
    LookAtPending(report);
}

// Without a command, a uci tells its use and changes nothing. Ours begins with its name.
bool UciIsOurs(const std::string& uci)
{
    char line[64] = "";
    setenv("KOBD_UCI", uci.c_str(), 1);  // the shell reads no text of it
    FILE* output = popen("exec \"$KOBD_UCI\" 2>&1", "re");
    if (output == nullptr) return false;
    const bool told = fgets(line, sizeof line, output) != nullptr;
    pclose(output);
    return told && std::string_view(line).starts_with("uci: ");
}

// The columns whose names are no names of options for a router's uci.
std::string DottedColumns()
{
    std::set<std::string_view> names;
    for (const TableEntry& table : kTableRows)
        for (const ColumnDef& column : table.layout.columns)
            if (std::string_view(column.name).find('.') != std::string_view::npos) names.insert(column.name);
    std::string text;
    for (const std::string_view name : names) text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

// The PATH with which the daemon was started; this program's, where none runs or its environment cannot be read.
std::string PathOf(const kobd_module& daemon)
{
    std::ifstream variables("/proc/" + std::to_string(daemon.process) + "/environ");
    for (std::string variable; std::getline(variables, variable, '\0');)
        if (variable.starts_with("PATH=")) return variable.substr(strlen("PATH="));
    const char* path = getenv("PATH");
    return path != nullptr ? path : "";
}

void LookAtUci(Report* report)
{
    kobd_module daemon{};
    (void)kobd_module_look(KOBD_MODULE_DAEMON, &daemon);
    std::istringstream folders(PathOf(daemon));
    for (std::string folder; std::getline(folders, folder, ':');)
    {
        const std::string uci = folder + "/uci";
        if (access(uci.c_str(), X_OK) != 0) continue;
        report->Say(kWell, "uci", uci);
        if (daemon.claimed != 0 && daemon.owner != geteuid())
            return report->Say(kNote, "uci", "not looked at: kobd is another user's, who may have chosen it");
        if (UciIsOurs(uci)) return;
        return report->Say(kNote, "uci",
                           "keeps no value of a section that tr069_cellular lacks, and never " + DottedColumns());
    }
    report->Say(kNote, "uci", "not on the PATH of kobd, which uses its own");
}

// The message with "(secret)" in the place of a refused password, key or PIN: "wifiKey0(secret) verify error".
std::string WithoutSecret(const std::string& message)
{
    const std::string name = message.substr(0, message.find('('));
    const size_t end = message.rfind(')');
    if (!IsSecretObject(name) || end == message.npos) return message;
    return name + "(secret)" + message.substr(end + 1);
}

// Notes the last of the log's lines that `matters` picks. False when there are none.
bool NoteLines(const char* subject, bool (*matters)(const LogLine&), Report* report)
{
    std::vector<LogLine> lines = LastLogLines();
    std::erase_if(lines, [&](const LogLine& line) { return !matters(line); });
    for (size_t i = lines.size() - std::min(lines.size(), kLinesShown); i < lines.size(); ++i)
        report->Say(kNote, subject, lines[i].time + " " + lines[i].function + ": " + WithoutSecret(lines[i].message));
    return !lines.empty();
}

// A uci that fails or hangs leaves lines under the names of the functions that load and save the cellular lists.
bool IsOfCellularList(const LogLine& line)
{
    return line.function.ends_with("ListInit") || line.function.ends_with("ListSave");
}

bool IsRefusal(const LogLine& line) { return line.message.find("verify error") != std::string::npos; }
}  // namespace

Outcome CommandDoctor(const Options& options, const Words&)
{
    Report report;
    LookAtDaemon(options, &report);
    LookAtLimit("msgmax", kMessageMax, &report);
    LookAtLimit("msgmnb", kQueueBytes, &report);
    LookAtQueueCount(&report);
    LookAtQueue(KOBD_MODULE_DAEMON, "kobd", &report);
    LookAtQueue(KOBD_MODULE_NOTIFY, "announcements", &report);
    LookAtQueue(KOBD_MODULE_SERVICES, "services", &report);
    LookAtQueue(KOBD_MODULE_FORWARD, "forwarded events", &report);
    LookAtLog(&report);
    LookAtFiles(&report);
    LookAtState(&report);
    LookAtUci(&report);
    (void)NoteLines("uci", IsOfCellularList, &report);
    const bool hidden = access(kLogFile, F_OK) == 0 && access(kLogFile, R_OK) != 0;
    if (!NoteLines("refusals", IsRefusal, &report))
        report.Say(hidden ? kNote : kWell, "refusals", hidden ? "unknown, the log cannot be read" : "none in the log");
    Outcome outcome(report.data, report.text);
    outcome.status = report.wrong ? 1 : 0;
    return outcome;
}
}  // namespace kobd::client
