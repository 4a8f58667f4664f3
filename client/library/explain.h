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

// A set of objects, with the lines that the daemon logged meanwhile.
Explained OfSet(int code, const Pairs& pairs, const std::vector<LogLine>& log);

// A get of objects.
Explained OfGet(int code, const Pairs& names);

// The request `id` for rows or tables. Asks the daemon which rows there are, where one is missing.
Explained OfRows(kobd_client* client, int code, uint16_t id, const ChangedRows& rows);

// A change file.
Explained OfChanges(kobd_client* client, int code, const ChangedRows& changes);
}  // namespace kobd::client
