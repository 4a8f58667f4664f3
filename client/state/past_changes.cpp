// Reading the history.
#include "client/state/past_changes.h"

#include <cerrno>

#include "daemon/base/result.h"
#include "host/state/folder.h"
#include "host/state/history.h"

namespace kobd::client
{
namespace
{
std::optional<std::string> TextOf(const host::Query& query, int column)
{
    return query.IsNull(column) ? std::nullopt : std::optional(std::string(query.Text(column)));
}
}  // namespace

bool PastChange::IsSecret() const { return old == host::kSecretText || now == host::kSecretText; }

std::string PastChange::Name() const
{
    if (IsRow()) return name + " " + std::to_string(number) + (field.empty() ? "" : " " + field);
    return kind == "object" ? name : kind + " " + name;
}

Failure ReadPastChanges(std::vector<PastChange>* changes)
{
    const host::State state;
    const bool opened = state->Open(false);
    if (!opened && state->Error() == ENOENT) return {};
    if (opened)
        for (host::Query query = state->Ask("SELECT batch, time, process, program, kind, name, number, field, old, new"
                                            " FROM history ORDER BY id");
             query.Next();)
            changes->push_back({query.Number(0), query.Number(1), query.Number(2), std::string(query.Text(3)),
                                std::string(query.Text(4)), std::string(query.Text(5)),
                                static_cast<int32_t>(query.Number(6)), std::string(query.Text(7)), TextOf(query, 8),
                                TextOf(query, 9)});
    if (!state->Failed()) return {};
    return {kSystemError, "cannot read the database in " + host::StateFolderName() + ": " + state->Why()};
}
}  // namespace kobd::client
