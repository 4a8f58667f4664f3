// What each commit changed, when, and for whom.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/state/database.h"

namespace kobd::host
{
// One thing that changes. A text that is missing was not there before, or is not any more.
struct Change
{
    const char* kind;             // "object", "row", "nvram" or "config"
    std::string_view name;        // of the object or table; the key
    int64_t number = 0;           // index of a row
    std::string_view field = {};  // a row's column; empty: the row itself, which comes or goes
    std::optional<std::string_view> old = {};
    std::optional<std::string_view> now = {};
    bool secret = false;  // neither text is kept
};

// The changes of one commit.
class History
{
public:
    // For the process that asked, 0 when nobody is known, and its program, where the caller knows it.
    History(Database* database, int process, std::string program = {})
        : database_(database), process_(process), program_(std::move(program))
    {
    }

    // Adds a change inside the transaction of the commit.
    void Add(const Change& change);

    // Drops what is too old. To be called once, when all is added.
    void Finish();

private:
    Database* database_;
    int process_;
    int64_t added_ = 0;
    int64_t time_ = 0;
    std::string program_;
};

// What the history calls this process, in place of the name that the system has for its program.
void HistoryNameSelf(const char* name);

// How the history says that a secret changed.
inline constexpr std::string_view kSecretText = "(secret)";
}  // namespace kobd::host
