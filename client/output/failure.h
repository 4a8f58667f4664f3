// Why something was not done. The function that finds it out makes it, each caller hands it on, and Print
// says it.
#pragma once

#include <string>

namespace kobd::client
{
// Stands in the place of a result code when the words make no command. kobctl then says where the help is, and
// its exit status is 2.
inline constexpr int kWrongUse = -2;

struct [[nodiscard]] Failure
{
    int code = 0;           // a result code, or kWrongUse
    std::string what = {};  // what was wrong and what would be right; empty: nothing failed

    explicit operator bool() const { return !what.empty(); }

    // The same failure, "COMMAND: " before it; none where nothing failed.
    Failure In(const std::string& command) const { return *this ? Failure{code, command + ": " + what} : Failure(); }
};

// "Invalid argument (2)".
std::string CodeText(int code);

// A failure whose line ends with its code in words.
Failure Refused(int code, const std::string& what);

// A failure of the system, with the reason in errno at its end.
Failure SystemFailure(const std::string& what);
}  // namespace kobd::client
