// The bus, for the threads of the gateway. Each thread has its own client. A refusal is thrown as a problem document.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/library/kobd_client.h"
#include "web/server/problem.h"
#include "web/server/route.h"

namespace kobd::web
{
using Values = std::map<std::string, std::string>;
using Assignments = std::vector<std::pair<std::string, std::string>>;

// The client of the calling thread. Throws a Problem when the system gives none.
kobd_client* Bus();

// Throws what ProblemOfCall returns unless the code of the last call is 0.
void Demand(int code);

// Why the last call of this thread's client was refused.
Problem ProblemOfCall(int code);

// The reply to a change. Where that was not saved, its body has "saved": false, and "not_saved" says why.
Reply Saved(Reply reply);

// Result codes that the library has no names for.
inline constexpr int kReadOnly = 10;
inline constexpr int kNoSuchColumn = 12;
inline constexpr int kNoSuchRow = 13;
inline constexpr int kTableFull = 15;
inline constexpr int kNoSuchOperation = 16;

// Whether the code says that a request was refused before anything was changed.
bool IsRefusal(int code);

// Whether a value that was set may read as `now`: the router writes numbers and letters in its own way.
bool ReadsAs(const kobd_description* description, const std::string& set, const std::string& now);

// Says in the problem of a change that failed half way what was set back, and what is left.
void AddTakenBack(const Json& restored, const Json& left, Problem* problem);

// `why` as members of a problem or of a verdict: object, table, index, column, value, reason, right.
Json MembersOf(const kobd_explanation& why);

// The values of those objects that can be read.
Values ReadValues(const std::vector<std::string>& names);

// The value that a client has sent for `name`: a text, an integer, or true and false for 1 and 0.
std::string ValueIn(const Json& value, const std::string& name);

// A number in a path or query. Throws a Problem that calls it `what`.
int32_t NumberIn(const std::string& text, const std::string& what, int32_t least, int32_t most);

// The description of that object or table. Throws a Problem 404 with the name that was probably meant.
const kobd_description& ObjectCalled(const std::string& name);
const kobd_table_description& TableCalled(const std::string& name);
}  // namespace kobd::web
