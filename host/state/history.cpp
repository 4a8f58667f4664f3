// The history's rows.
#include "host/state/history.h"

#include <unistd.h>

#include <ctime>

#include "host/state/folder.h"

namespace kobd::host
{
namespace
{
constexpr int64_t kRowsKept = 10000;  // at most
constexpr int64_t kRowsAtOnce = 64;   // that go together: each time, the oldest page is written besides the newest

const char* own_name = nullptr;

std::string ProgramOf(int process)
{
    if (process == getpid() && own_name != nullptr) return own_name;
    std::string name;
    if (process <= 0 || !ReadText("/proc/" + std::to_string(process) + "/comm", &name)) return "?";
    while (!name.empty() && name.back() == '\n') name.pop_back();
    return name;
}

std::optional<std::string_view> Shown(const std::optional<std::string_view>& text, bool secret)
{
    return text && secret ? kSecretText : text;
}
}  // namespace

void HistoryNameSelf(const char* name) { own_name = name; }

void History::Add(const Change& change)
{
    const bool first = added_++ == 0;
    if (first) time_ = time(nullptr);
    if (first && program_.empty()) program_ = ProgramOf(process_);
    database_->Run(
        "INSERT INTO history(batch, time, process, program, kind, name, number, field, old, new)"
        " VALUES(ifnull((SELECT batch FROM history ORDER BY id DESC LIMIT 1), 0) + ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
        int64_t{first}, time_, int64_t{process_}, program_, std::string_view(change.kind), change.name, change.number,
        change.field, Shown(change.old, change.secret), Shown(change.now, change.secret));
}

void History::Finish()
{
    const int64_t last = database_->LastRow();
    if (added_ != 0 && last / kRowsAtOnce != (last - added_) / kRowsAtOnce)
        database_->Run("DELETE FROM history WHERE id <= ?", last - (kRowsKept - kRowsAtOnce));
}
}  // namespace kobd::host
