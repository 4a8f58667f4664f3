// What all checks of this folder share.
//
//   - A check of an object's value is given the value as the client sent it and leaves it unchanged.
//     A check of a row is given the decoded row of its table, as bytes without alignment. Both return
//     0 to accept and 2 to refuse, and refuse everything that their header does not name.
//   - A predicate answers the other way round: 1 for yes and 0 for no. No object and no table names one.
//   - A missing argument (nullptr) is refused, also where the empty text is accepted.
//   - A text that is longer than the check's working copy is refused. Everything acceptable is far shorter.
//   - Log lines are written under the check's own name, whatever the debug switch says.
//   - No check keeps anything between two calls. One call at a time: the platform's helpers need not be
//     safe for threads.
//
// The catalogue's rows name the checks. The platform libraries may call all of them.
#pragma once

#include "daemon/base/log.h"
#include "daemon/base/result.h"

namespace kobd
{
// The text of an argument; a missing one reads as the empty text. A check that accepts the empty text
// refuses a missing one by itself.
constexpr const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

constexpr int Verdict(bool accepted) { return accepted ? kSuccess : kInvalidArgument; }

// Writes one line as `function`, with the number of the source line that calls this, and refuses.
inline int Refuse(const char* function, const char* text, int line = __builtin_LINE())
{
    kobd_log_print(function, line, "%s", text);
    return kInvalidArgument;
}
}  // namespace kobd
