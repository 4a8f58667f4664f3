// Why something was not done. The function that finds out makes the failure, its callers return it, and Print prints
// it.
#pragma once

#include <string>

#include "client/dictionary/names.h"

namespace kobd::client
{
// In place of a result code: the words of the command line are no command. kobctl then names the help, and its exit
// status is 2.
inline constexpr int kWrongUse = -2;

struct [[nodiscard]] Failure
{
    int code = 0;           // a result code, or kWrongUse
    std::string what = {};  // what was wrong and what would be right; empty: nothing failed

    explicit operator bool() const { return !what.empty(); }

    // The same failure, "COMMAND: " before it; none where nothing failed.
    Failure In(const std::string& command) const { return *this ? Failure{code, command + ": " + what} : Failure(); }
};

// A failure whose text ends with its code in words.
Failure FailureWithCode(int code, const std::string& what);

// There is no such `kind`: "object", "table" or "object or table". Names the nearest name, else kobctl search.
Failure NoSuchNameFailure(const std::string& kind, const std::string& name);

// A failure of the system, with the reason in errno at its end.
Failure SystemFailure(const std::string& what);
}  // namespace kobd::client
