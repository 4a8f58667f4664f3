// Why the daemon refused a request, by what the request asked for.
#pragma once

#include "client/dictionary/dictionary.h"
#include "client/library/connection.h"

namespace kobd::client
{
using Pairs = std::vector<NameAndValue>;
using ChangedRows = std::vector<RowWithValues>;

inline constexpr int32_t kNoIndex = -1;  // of a row that names its table alone

// An explanation that is a reason alone.
Explained Simple(const std::string& reason);

// What the imitated router could not set in the client's last request.
struct FailedChange
{
    std::string name = {};  // of an object, or of a table
    int32_t index = 0;      // of its row
    size_t changed = 0;     // objects or rows that the request had set before
};

// Asks the imitated router; nothing where it does not tell.
std::optional<FailedChange> AskWhatFailed(kobd_client* client);

// "set: A, B; not set: C; ", of what was to be set in this order, the one at `failed` failing.
std::string HowFar(const Words& texts, size_t failed);

// A set of objects. Asks the imitated router which one it could not set, where no check has refused one.
Explained OfSet(kobd_client* client, int code, const Pairs& pairs);

// A get of objects.
Explained OfGet(int code, const Pairs& names);

// The request `id` for rows or tables. Asks the daemon which rows there are, where one is missing.
Explained OfRows(kobd_client* client, int code, uint16_t id, const ChangedRows& rows);

// A change file. Asks as OfSet and OfRows do.
Explained OfChanges(kobd_client* client, int code, const ChangedRows& changes);
}  // namespace kobd::client
